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

// All that the file carries.
struct Stored {
    Settings settings;
    CalibrationChoice choice;
};

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

void readCalibration(FieldReader& fields, Stored& stored) {
    if (!fields.find(calibrationSection))
        return;
    stored.choice.calDefault.a = fields.number();
    stored.choice.calDefault.b = fields.number();
    stored.choice.calDefault.c = fields.number();
    stored.choice.useFileCalibration = fields.int16() != 0;
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

// Whatever is wrong with the file ends the reading.
void readFile(Stored& stored) {
    const std::string systemDir = stored.settings.systemDir;
    try {
        FieldReader fields(readContents(systemDir));
        readDirectories(fields, stored.settings);
        readCalibration(fields, stored);
        readPlacements(fields, stored.settings.windowPlacement);
        readPeakSets(fields, stored.settings);
    } catch (const RuntimeFault&) {
        // A first run or a damaged file: the values not read stand.
    }
    // A file copied from another computer or user names a folder of that one.
    stored.settings.systemDir = systemDir;
}

std::string calibrationText(const Stored& stored) {
    FieldWriter lines;
    const Calibration& calibration = stored.choice.calDefault;
    lines.record(calibrationSection);
    lines.record(calibration.a, calibration.b, calibration.c,
                 std::int16_t{stored.choice.useFileCalibration});
    return lines.contents();
}

std::string placementText(const WindowPlacements& placements) {
    FieldWriter lines;
    lines.record(placementSection);
    for (const WindowPlacement& window : placements)
        lines.record(window.left, window.top, window.width, window.height);
    return lines.contents();
}

std::string peakText(const Settings& settings) {
    FieldWriter lines;
    lines.record(peakSection);
    lines.record(settings.peakSetCount);
    for (std::int16_t i = 0; i < settings.peakSetCount; ++i) {
        const PeakAreaSet& set = settings.peakSets[i];
        lines.record(set.bkg1Low, set.bkg1High, set.bkg2Low, set.bkg2High, set.pkLow, set.pkHigh,
                     set.name.view());
    }
    return lines.contents();
}

SettingsSections sectionsOf(const Stored& stored) {
    SettingsSections sections;
    auto section = sections.begin();
    for (const auto& [header, directory] : directorySections) {
        FieldWriter lines;
        lines.record(header);
        lines.record(stored.settings.*directory);
        *section++ = lines.contents();
    }
    *section++ = calibrationText(stored);
    *section++ = placementText(stored.settings.windowPlacement);
    *section = peakText(stored.settings);
    return sections;
}

// `own`, with what another instance may have written since in place of the sections that this one
// has left as they were.
std::string merged(const SettingsSections& own, const SettingsSections& before, Stored stored) {
    readFile(stored);
    const SettingsSections now = sectionsOf(stored);
    std::string contents;
    for (std::size_t i = 0; i < own.size(); ++i)
        contents += own[i] == before[i] ? now[i] : own[i];
    return contents;
}

}  // namespace

void readSettings(Settings& settings, CalibrationChoice& choice,
                  const DatabaseCheck& checkDatabase) {
    Stored stored{settings, choice};
    readFile(stored);
    settings = stored.settings;
    choice = stored.choice;
    settings.asStored = sectionsOf(stored);

    if (checkDatabase)
        checkDatabase(settings.marigoldDir);
    std::error_code ignored;
    if (namesFolder(settings.lastDirectory))
        std::filesystem::current_path(settings.lastDirectory, ignored);
}

void writeSettings(Settings& settings, const CalibrationChoice& choice) {
    const Stored stored{settings, choice};
    const SettingsSections own = sectionsOf(stored);
    // Where the folder cannot be made, replacing the file raises the fault that says why.
    std::error_code ignored;
    std::filesystem::create_directories(settings.systemDir, ignored);
    replaceFile(pathIgnoringCase(settings.systemDir, fileName),
                merged(own, settings.asStored, stored));
    settings.asStored = own;
}

void writePeakRegions(Settings& settings, const CalibrationChoice& choice) {
    if (peakText(settings) != settings.asStored.back())
        writeSettings(settings, choice);
}

}  // namespace kestrel
