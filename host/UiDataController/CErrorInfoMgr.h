#pragma once
// The host's texts for the error pair of a failed device request (first code
// a commlayer::TransportError, second the device's sub-status or HTTP status).
// Texts are translation keys of the context "UiDataController::CErrorInfoMgr"
// in the host's translations. Stateless; any thread (translation needs the
// application object).
#include <QString>
#include <QStringList>

namespace UiDataController {

class CErrorInfoMgr final {
public:
    // The translated text; empty when the pair is not an error the host knows.
    static QString GetErrorInfoByCode(int first, int second);
    // The untranslated key, or null.
    static const char* GetErrorKeyByCode(int first, int second);
    // Every key GetErrorKeyByCode can return.
    static QStringList AllKeys();
};

} // namespace UiDataController
