#pragma once
// What the information display does with one alarm record, decided without
// any widget: whether it is shown, its display kind, the display codes of the
// face, the voice prompt, the counter changes and whether the pop-up is
// raised. The information display calls Classify on the GUI thread for every
// record and carries the decision out; the function keeps no state.
#include <QString>
#include <cstdint>

#include "AlarmDisplayConfig.h"
#include "AlarmShowInfo.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"

namespace BodyTemperature {

struct AlarmDecision {
    enum class Action {
        Drop,          // the alarm-type switch of the event is off: nothing happens
        CountOnly,     // unknown event code: only the counters are reported
        ShowFace,      // comparison and capture kinds: capture card, alarm card, voice, counters
        ShowReturning  // EventKind::Returning: one returning-person card per open view
    };
    Action action = Action::Drop;
    EventKind kind = EventKind::Comparison;
    PopUpType popType = PopUpType::None;
    MaskState maskType = MaskState::Unknown;
    uint32_t temperatureType = 3;
    uint32_t alarmType = 0;
    QString voicePath;  // empty: no prompt
    int normalDelta = 0;
    int noMaskDelta = 0;
    int abnormalDelta = 0;

    bool raisesPopUp() const { return popType != PopUpType::None; }
    bool isCaptureKind() const { return IsCaptureKind(kind); }
    // Writes the kind and the display codes into the display record.
    void applyTo(AlarmShowInfo& info) const;
};

class CAlarmClassifier final {
public:
    static AlarmDecision Classify(const publicdatacontroller::IntelAlarmEventInfo& record,
        const AlarmDisplayConfig& config);

    CAlarmClassifier() = delete;

private:
    static void ClassifyFace(const protocol::IntelAlarmFaceInfo& face, const AlarmDisplayConfig& config,
        AlarmDecision& decision);
};

} // namespace BodyTemperature
