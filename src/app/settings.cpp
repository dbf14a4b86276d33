#include "app/settings.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/settings_fields.h"
#include "base/byte_reader.h"
#include "base/file_replacement.h"
#include "base/input_file.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

constexpr std::string_view fileName = "kestrel.inf";
// Far above what the program ever writes; a longer file is read up to here.
constexpr std::size_t longestFile = std::size_t{1} << 20;

struct DirectorySection {
    std::string_view header;
    std::string Settings::*directory;
};

constexpr std::array<DirectorySection, 4> directorySections = {{
    {"[system dir]", &Settings::systemDir},
    {"[marigold dir]", &Settings::marigoldDir},
    {"[chn dir]", &Settings::lastDirectory},
    {"[save as dir]", &Settings::saveAsDir},
}};
constexpr std::string_view calibrationSection = "[ene cal]";
constexpr std::string_view placementSection = "[form pos]";
constexpr std::string_view peakSection = "[pk pos]";

// A path with a NUL names nothing, but the system's calls would take it for the part in front.
bool namesFolder(const std::string& path) {
    std::error_code ignored;
    return path.find('\0') == std::string::npos && std::filesystem::is_directory(path, ignored);
}

std::string readContents(const std::string& systemDir) {
    InputFile file(pathIgnoringCase(systemDir, fileName));
    const std::vector<std::byte> bytes = file.readFront(longestFile);
    return ByteReader(bytes).textAt(0, bytes.size());
}

void readDirectories(FieldReader& fields, Settings& settings) {
    for (const auto& [header, directory] : directorySections) {
        if (fields.find(header))
            settings.*directory = fields.text();
    }
}

void readCalibration(FieldReader& fields, Spectrum& spectrum) {
    if (!fields.find(calibrationSection))
        return;
    spectrum.calDefault.a = fields.number();
    spectrum.calDefault.b = fields.number();
    spectrum.calDefault.c = fields.number();
    spectrum.useFileCalibration = fields.int16();
}

void readPlacements(FieldReader& fields, WindowPlacements& placements) {
    if (!fields.find(placementSection))
        return;
    for (WindowPlacement& window : placements) {
        window.left = fields.int32();
        window.top = fields.int32();
        window.width = fields.int32();
        window.height = fields.int32();
    }
}

void readPeakSet(FieldReader& fields, PeakAreaSet& set) {
    for (std::int16_t* bound :
         {&set.bkg1Low, &set.bkg1High, &set.bkg2Low, &set.bkg2High, &set.pkLow, &set.pkHigh})
        *bound = fields.int16();
    set.name.assignFromFile(fields.text());
}

void readPeakSets(FieldReader& fields, Settings& settings) {
    if (!fields.find(peakSection))
        return;
    const std::int16_t count = fields.int16();
    // More sets than the table can commit are read as far as it goes; what is kept can be written.
    settings.peakSetCount = std::clamp<std::int16_t>(count, 0, mostPeakSets);
    for (std::int16_t i = 0; i < count; ++i)
        readPeakSet(fields, settings.peakSets[i]);
}

void writePeakSets(FieldWriter& file, const Settings& settings) {
    file.record(peakSection);
    file.record(settings.peakSetCount);
    for (std::int16_t i = 0; i < settings.peakSetCount; ++i) {
        const PeakAreaSet& set = settings.peakSets[i];
        file.record(set.bkg1Low, set.bkg1High, set.bkg2Low, set.bkg2High, set.pkLow, set.pkHigh,
                    set.name.view());
    }
}

}  // namespace

void readSettings(Settings& settings, Spectrum& spectrum, const DatabaseCheck& checkDatabase) {
    const std::string startDir = settings.systemDir;
    try {
        FieldReader fields(readContents(startDir));
        readDirectories(fields, settings);
        readCalibration(fields, spectrum);
        readPlacements(fields, settings.windowPlacement);
        readPeakSets(fields, settings);
    } catch (const RuntimeFault&) {
        // A first run or a damaged file: the values not read stand.
    }
    // A file copied from another computer names a folder of that one, and a relative path would
    // move with the current directory: neither may decide where the settings are saved.
    if (!std::filesystem::path(settings.systemDir).is_absolute() ||
        !namesFolder(settings.systemDir))
        settings.systemDir = startDir;

    if (checkDatabase)
        checkDatabase(settings.marigoldDir);
    std::error_code ignored;
    if (namesFolder(settings.lastDirectory))
        std::filesystem::current_path(settings.lastDirectory, ignored);
}

void writeSettings(const Settings& settings, const Spectrum& spectrum) {
    FieldWriter file;
    for (const auto& [header, directory] : directorySections) {
        file.record(header);
        file.record(settings.*directory);
    }
    const Calibration& calibration = spectrum.calDefault;
    file.record(calibrationSection);
    file.record(calibration.a, calibration.b, calibration.c, spectrum.useFileCalibration);
    file.record(placementSection);
    for (const WindowPlacement& window : settings.windowPlacement)
        file.record(window.left, window.top, window.width, window.height);
    writePeakSets(file, settings);

    // Where the folder cannot be made, replacing the file raises the fault that says why.
    std::error_code ignored;
    std::filesystem::create_directories(settings.systemDir, ignored);
    replaceFile(pathIgnoringCase(settings.systemDir, fileName), file.contents());
}

}  // namespace kestrel
