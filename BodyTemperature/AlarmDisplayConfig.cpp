#include "AlarmDisplayConfig.h"

#include "VantorGUIToolkit/TargetPath.h"

namespace BodyTemperature {

bool FillDefaultVoicePaths(AlarmDisplayConfig& config, int language)
{
    if (!config.strNoMaskVoice.isEmpty() || !config.strNormalVoice.isEmpty() || !config.strAbnormalVoice.isEmpty())
        return false;
    const bool chinese = language == 1;
    config.strNoMaskVoice =
        VantorGUIToolkit::GetTargetPathFile(chinese ? QStringLiteral("no_mask.wav") : QStringLiteral("no_mask_en.wav"));
    config.strNormalVoice =
        VantorGUIToolkit::GetTargetPathFile(chinese ? QStringLiteral("normal.wav") : QStringLiteral("normal_en.wav"));
    config.strAbnormalVoice = VantorGUIToolkit::GetTargetPathFile(
        chinese ? QStringLiteral("abnormal.wav") : QStringLiteral("abnormal_en.wav"));
    return true;
}

} // namespace BodyTemperature
