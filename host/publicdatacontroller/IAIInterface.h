#pragma once
// The plug-in contract between the host and a dashboard module.
// The host calls everything on its GUI thread. It owns the descriptor (deletes
// it through the virtual destructor); the page widget belongs to its Qt parent.
#include <QString>

class QWidget;

namespace publicdatacontroller {

class IAIWidget;

class IAIInterface {
public:
    virtual ~IAIInterface() = default;
    virtual QString getObjectName() const = 0;
    virtual QString getAIName() const = 0;
    virtual QString getAIIconUrl() const = 0;
    virtual IAIWidget* getAIWidget(QWidget* parent) = 0;
    virtual QString getAIDllName() const = 0;
};

} // namespace publicdatacontroller

// The two C functions every module exports.
extern "C" {
typedef publicdatacontroller::IAIInterface* (*GetAIInterfaceFn)();
typedef publicdatacontroller::IAIWidget* (*GetAIWidgetFn)(QWidget* parent);
}
