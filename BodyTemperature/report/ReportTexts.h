#pragma once
// The texts of a shift report in the report's own language (English or
// Chinese), independent of the language the application runs in: column
// names, event kinds, states, messages. Built and used on the export worker.
#include <QString>
#include <cstdint>
#include <memory>

#include "record/JournalEvent.h"

class QTranslator;

namespace BodyTemperature {

class ReportTexts final {
public:
    explicit ReportTexts(int language);  // 1 Chinese, anything else English
    ~ReportTexts();
    ReportTexts(const ReportTexts&) = delete;
    ReportTexts& operator=(const ReportTexts&) = delete;

    // A key of the report's own context; the key itself when untranslated.
    QString operator()(const char* key) const;
    // A key of another class's context (the page's counter captions).
    QString text(const char* context, const char* key) const;

    QString kind(uint32_t kind) const;
    QString temperatureState(const JournalEvent& e) const;
    QString mask(const JournalEvent& e) const;
    static QString temperature(const JournalEvent& e);  // "37.2 °C", empty when not measured
    static QString time(int64_t secs);                   // local "yyyy-MM-dd hh:mm:ss"

private:
    std::unique_ptr<QTranslator> m_translator;
    bool m_loaded = false;
};

} // namespace BodyTemperature
