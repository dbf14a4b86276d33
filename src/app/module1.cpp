#include "app/module1.h"

namespace kestrel {

void startModule1(Module1& module, const std::string& systemDir,
                  const DatabaseCheck& checkDatabase) {
    module.settings.peakSetCount = 0;
    module.settings.systemDir = systemDir;
    module.settings.marigoldDir.clear();
    module.settings.lastDirectory.clear();
    module.settings.saveAsDir.clear();
    readSettings(module.settings, module.calibrationChoice, checkDatabase);
    module.preferences.folder = systemDir;
    readPreferences(module.preferences);
    module.palette = standardPalette;
    Spectrum& spectrum = module.spectrum;
    spectrum.channelCount = 16384;
    spectrum.startDate.assign("");
    spectrum.startTime.assign("");
    spectrum.comment.assign("");
    module.view = ViewState{};
    module.nuclRoiOn = true;
    module.calibrationChoice = {};
}

}  // namespace kestrel
