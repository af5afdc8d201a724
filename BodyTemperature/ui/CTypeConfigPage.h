#pragma once
// The small non-modal panel with the three alarm-type switches, opened by the
// information display under its tool-button bar. Every click takes effect at
// once: signalCheckState carries the three switches and the receiver stores
// and saves them (there is no Save button). The panel is a frameless pop-up,
// so it closes when the user clicks elsewhere. Created by the information
// display each time its button is pressed, with the bar as parent. GUI thread.
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QWidget>

#include "AlarmDisplayConfig.h"

class QCheckBox;
class QFrame;

namespace BodyTemperature {

class CTypeConfigPage final : public QWidget {
    Q_OBJECT
public:
    explicit CTypeConfigPage(QWidget* parent = nullptr);
    ~CTypeConfigPage() override;

    // Takes a copy and sets the three check boxes from its TemperatureAlarm.
    void SetConfig(const AlarmDisplayConfig& config);
    const AlarmDisplayConfig& GetConfig() const { return m_config; }

    // Size of the panel for a language setting (1: Chinese, else English),
    // whose labels differ much in length.
    static QSize PageSize(int language);
    // Top-left corner of the panel, computed from the bar's geometry and taken
    // as a point of the bar mapped to global: near the bar's right end and
    // below it, scaled from a 1920 x 1080 layout.
    static QPoint PagePosition(const QRect& barGeometry, int language);
    // Sizes the panel for the language and moves it below bar; works whether
    // the panel is its own window or a child of bar.
    void PlaceUnder(const QWidget* bar, int language);

protected:
    // A pop-up partly off the screen could not be used: when the place it was
    // given does not fit, it is shifted just enough to be wholly visible.
    void showEvent(QShowEvent* event) override;

signals:
    void signalCheckState(BodyTemperature::TemperatureAlarm& struInfo);

public slots:
    void onDealCheck(bool bChecked);

private:
    AlarmDisplayConfig m_config;
    QFrame* m_pFrame = nullptr;
    QCheckBox* m_pComparisonCheck = nullptr;
    QCheckBox* m_pTemperatureCheck = nullptr;
    QCheckBox* m_pCaptureCheck = nullptr;
};

} // namespace BodyTemperature
