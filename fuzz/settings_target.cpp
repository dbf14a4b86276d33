// Reads the input as a settings file; what was read must come back after it has been written.
#include <filesystem>
#include <memory>

#include "app/settings.h"
#include "base/runtime_fault.h"
#include "fuzz_input.h"

namespace kestrel::fuzz {
namespace {

struct Kept {
    Settings settings;
    CalibrationChoice choice;
};

std::unique_ptr<Kept> read() {
    auto kept = std::make_unique<Kept>();
    kept->settings.systemDir = folder();
    readSettings(kept->settings, kept->choice);
    std::filesystem::current_path(folder());
    return kept;
}

bool sameSet(const PeakAreaSet& a, const PeakAreaSet& b) {
    return a.bkg1Low == b.bkg1Low && a.bkg1High == b.bkg1High && a.bkg2Low == b.bkg2Low &&
           a.bkg2High == b.bkg2High && a.pkLow == b.pkLow && a.pkHigh == b.pkHigh &&
           a.name == b.name;
}

// A folder called like a section hides that section once it is written in front of it.
bool namesSection(const Settings& settings) {
    return settings.marigoldDir.starts_with('[') || settings.lastDirectory.starts_with('[') ||
           settings.saveAsDir.starts_with('[');
}

void requireSame(const Kept& a, const Kept& b) {
    require(a.settings.marigoldDir == b.settings.marigoldDir);
    require(a.settings.lastDirectory == b.settings.lastDirectory);
    require(a.settings.saveAsDir == b.settings.saveAsDir);
    require(a.choice == b.choice);
    for (std::int64_t i = 0; i < 17; ++i)
        require(a.settings.windowPlacement[i] == b.settings.windowPlacement[i]);
    require(a.settings.peakSetCount == b.settings.peakSetCount);
    for (std::int64_t i = 0; i < a.settings.peakSetCount; ++i)
        require(sameSet(a.settings.peakSets[i], b.settings.peakSets[i]));
}

}  // namespace
}  // namespace kestrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::fuzz;
    writeFile("kestrel.inf", asText(data, size));
    const auto first = read();
    kestrel::writeSettings(first->settings, first->choice);
    const auto second = read();
    if (!namesSection(first->settings))
        requireSame(*first, *second);
    return 0;
}
