#include "app/preferences.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "base/byte_reader.h"
#include "base/file_replacement.h"
#include "base/input_file.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

constexpr std::string_view fileName = "kestrel.ini";
// Far above what the program ever writes; a longer file is left alone.
constexpr std::size_t longestFile = std::size_t{1} << 20;
constexpr std::size_t mostTexts = 100;  // of a list

constexpr std::array<std::string_view, 3> schemeNames = {"black", "light", "safe"};

std::string textOf(bool value) {
    return value ? "on" : "off";
}

std::string textOf(ColourScheme value) {
    return std::string(schemeNames.at(static_cast<std::size_t>(value)));
}

std::string textOf(const std::string& value) {
    return value;
}

std::string textOf(const std::vector<std::string>& value) {
    return joinedLines(value);
}

// Four numbers with blanks between them.
std::string textOf(const WindowPlacement& value) {
    std::string text;
    for (const std::int32_t part : {value.left, value.top, value.width, value.height})
        text += (text.empty() ? "" : " ") + plainNumber(std::int64_t{part});
    return text;
}

void take(std::string_view text, WindowPlacement& value) {
    std::array<std::int32_t, 4> parts{};
    const char* next = text.data();
    const char* const end = next + text.size();
    for (std::int32_t& part : parts) {
        while (next != end && *next == ' ')
            ++next;
        const auto read = std::from_chars(next, end, part);
        if (read.ec != std::errc())
            return;
        next = read.ptr;
    }
    value = {parts[0], parts[1], parts[2], parts[3]};
}

void take(std::string_view text, bool& value) {
    if (text == "on" || text == "off")
        value = text == "on";
}

void take(std::string_view text, ColourScheme& value) {
    const auto* name = std::ranges::find(schemeNames, text);
    if (name != schemeNames.end())
        value = static_cast<ColourScheme>(name - schemeNames.begin());
}

void take(std::string_view text, std::string& value) {
    value = text;
}

void take(std::string_view text, std::vector<std::string>& value) {
    value = splitLines(text);
    value.resize(std::min(value.size(), mostTexts));
}

struct Field {
    std::string_view key;
    std::string (*text)(const Preferences& preferences);
    void (*take)(std::string_view text, Preferences& preferences);
};

template <auto member>
constexpr Field field(std::string_view key) {
    return {key, [](const Preferences& p) { return textOf(p.*member); },
            [](std::string_view text, Preferences& p) { take(text, p.*member); }};
}

constexpr std::array fields = {
    field<&Preferences::energyAxis>("energyAxis"),
    field<&Preferences::fineTicks>("fineTicks"),
    field<&Preferences::largeTexts>("largeTexts"),
    field<&Preferences::markLabels>("markLabels"),
    field<&Preferences::photonsOnly>("photonsOnly"),
    field<&Preferences::colours>("colours"),
    field<&Preferences::peaksWindow>("peaksWindow"),
    field<&Preferences::peakCalibrationWindow>("peakCalibrationWindow"),
    field<&Preferences::peakCalibration>("peakCalibration"),
    field<&Preferences::recentFiles>("recentFiles"),
};

std::string pathOf(const Preferences& preferences) {
    return pathIgnoringCase(preferences.folder, fileName);
}

KeyedLines readLines(const std::string& path) {
    InputFile file(path);
    if (file.size() > longestFile)
        throw RuntimeFault(Fault::PathAccess, path);
    const std::vector<std::byte> bytes = file.readFront(longestFile);
    return KeyedLines(ByteReader(bytes).textAt(0, bytes.size()));
}

KeyedLines readLinesIfThere(const std::string& path) {
    try {
        return readLines(path);
    } catch (const RuntimeFault& fault) {
        if (fault.fault() != Fault::FileNotFound)
            throw;
        return {};
    }
}

}  // namespace

void readPreferences(Preferences& preferences) {
    KeyedLines stored;
    try {
        stored = readLines(pathOf(preferences));
    } catch (const RuntimeFault&) {
        // A file that cannot be read is as none.
    }
    for (const Field& field : fields) {
        if (const auto text = stored.find(field.key))
            field.take(*text, preferences);
        preferences.asStored.set(field.key, field.text(preferences));
    }
}

void writePreferences(Preferences& preferences) {
    KeyedLines own;
    for (const Field& field : fields)
        own.set(field.key, field.text(preferences));
    if (own.contents() == preferences.asStored.contents())
        return;
    std::error_code ignored;
    std::filesystem::create_directories(preferences.folder, ignored);
    const std::string path = pathOf(preferences);
    KeyedLines lines = readLinesIfThere(path);
    for (const Field& field : fields) {
        const auto value = own.find(field.key);
        if (value != preferences.asStored.find(field.key))
            lines.set(field.key, *value);
    }
    replaceFile(path, lines.contents());
    preferences.asStored = own;
}

}  // namespace kestrel
