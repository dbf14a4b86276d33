#include "spectrum/open_any.h"

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <numeric>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/input_file.h"
#include "base/number_text.h"
#include "base/pointer_scope.h"
#include "spectrum/formats.h"
#include "spectrum/formats/exchange_formats.h"
#include "spectrum/formats/loaded_record.h"

namespace kestrel {
namespace {

// All patterns of both tables, the all-embracing one of the last entry left out.
std::string allPatterns() {
    std::string patterns;
    for (const ExchangeFormat& format : exchangeFormats())
        patterns.append(patterns.empty() ? "" : " ").append(format.pattern);
    for (const SpectrumFormat& format : spectrumFormats()) {
        if (format.read != nullptr)
            patterns.append(" ").append(format.pattern);
    }
    return patterns;
}

FileDialog anyDialog(const std::string& title, const std::string& folder) {
    FileDialog dialog{.title = title,
                      .filters = {{"All spectra", allPatterns()}},
                      .filterIndex = 1,
                      .folder = folder};
    for (const ExchangeFormat& format : exchangeFormats())
        dialog.filters.push_back({format.name, format.pattern});
    dialog.filters.push_back({"All files", "*.*"});
    return dialog;
}

// A file of one of the endings that the open dialog knows is left to it, but for .txt: there the
// last format takes every file, and is known by its byte 127.
bool isExchangeFile(const std::string& path) {
    constexpr char headerEnd = '\x7f';
    if (!fileExists(path))
        return false;
    const std::vector<std::byte> bytes = InputFile(path).readFront(recognitionBytes);
    const std::string_view front(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const SpectrumFormat* const named = formatForName(path);
    const bool left = named != nullptr && (named->id != FormatId::NaigE560 ||
                                           front.find(headerEnd) != std::string_view::npos);
    return !left && (named == nullptr || exchangeFormatOf(front) != nullptr);
}

std::string lineOf(const MeasuredSpectrum& spectrum) {
    const double sum = std::accumulate(spectrum.counts.begin(), spectrum.counts.end(), 0.0);
    std::string line = spectrum.name.empty() ? spectrum.title : spectrum.name;
    if (spectrum.start)
        line += "  " + formatNumber(spectrum.start->hour, "00") + ":" +
                formatNumber(spectrum.start->minute, "00") + ":" +
                formatNumber(spectrum.start->second, "00");
    if (spectrum.liveSeconds)
        line += "  " + plainNumber(*spectrum.liveSeconds) + " s";
    // Some programs write fractions of counts.
    return line + "  " + plainNumber(std::nearbyint(sum)) + " counts";
}

// None when the user cancels.
std::optional<std::size_t> choose(const std::vector<MeasuredSpectrum>& spectra, Dialogs& dialogs) {
    if (spectra.size() == 1)
        return 0;
    ChoiceBox box{
        .title = "Open Any File",
        .prompt = "The file holds " + std::to_string(spectra.size()) + " spectra. Which one?",
        .items = {},
        .chosen = preferredSpectrum(spectra)};
    for (std::size_t i = 0; i < spectra.size(); ++i)
        box.items.push_back(std::to_string(i + 1) + "  " + lineOf(spectra[i]));
    return dialogs.choose(box);
}

bool mayGroup(int group, Dialogs& dialogs) {
    return group == 1 ||
           dialogs.message({.text = "The spectrum has more channels than can be shown."
                                    "\nShow it with groups of " +
                                    std::to_string(group) + " channels added?",
                            .icon = Icon::Question,
                            .buttons = Buttons::OkCancel});
}

std::vector<MeasuredSpectrum> readFile(const std::string& path, Dialogs& dialogs) {
    const HourglassScope hourglass(dialogs);
    InputFile file(path);
    return readExchangeFile(file);
}

OpenResult openExchangeFile(const std::string& path, const OpenTarget& target, Dialogs& dialogs) {
    const std::vector<MeasuredSpectrum> spectra = readFile(path, dialogs);
    const std::optional<std::size_t> chosen = choose(spectra, dialogs);
    if (!chosen)
        return OpenResult::Cancelled;
    const MeasuredSpectrum& measured = spectra.at(*chosen);
    const int group = channelsToGroup(measured);
    if (!mayGroup(group, dialogs))
        return OpenResult::Cancelled;
    const TakenSpectrum taken = takeMeasured(measured, group, target.spectrum);
    target.spectrum.filePath = path;
    finishOpening(target, taken.tellsCalibration);
    target.notice.lines = taken.notices;
    return OpenResult::Loaded;
}

}  // namespace

OpenResult openAnySpectrum(const OpenTarget& target, std::string& lastDirectory,
                           int& lastFilterIndex, Dialogs& dialogs, const std::string& title) {
    const FileChoice choice = dialogs.openFile(anyDialog(title, lastDirectory));
    lastDirectory = currentDirectory();
    return choice.path.empty()
               ? OpenResult::Cancelled
               : openAnyPath(choice.path, target, lastDirectory, lastFilterIndex, dialogs);
}

OpenResult openAnyPath(const std::string& path, const OpenTarget& target,
                       std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs) {
    if (!isExchangeFile(path))
        return openSpectrumPath(path, target, lastDirectory, lastFilterIndex, dialogs);
    std::error_code staysWhereItIs;
    std::filesystem::current_path(std::filesystem::path(path).parent_path(), staysWhereItIs);
    lastDirectory = currentDirectory();
    try {
        return openExchangeFile(path, target, dialogs);
    } catch (const FormatError& error) {
        dialogs.message({.text = "This file cannot be read as a spectrum.",
                         .icon = Icon::Exclamation,
                         .details = std::string(error.what()) + "\n" + path});
        return OpenResult::Refused;
    }
}

}  // namespace kestrel
