#include "spectrum/csv_export.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/file_replacement.h"
#include "base/input_file.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::string_view lineEnd = "\r\n";

// Six blanks and the number, of which the last `width` characters are kept.
void appendColumn(std::string& line, std::int64_t number, std::size_t width) {
    line += lastCharacters("      " + signedNumber(number), width);
}

std::string headerText(const Spectrum& spectrum) {
    const FixedText<6>& time = spectrum.startTime;
    std::string text;
    text.append("FILE NAME : ").append(withoutControls(spectrum.filePath)).append(lineEnd);
    text.append("Comment   : ").append(withoutControls(spectrum.chnTrailer.sample.view()));
    text.append(lineEnd);
    text.append("Date      : ").append(withoutControls(spectrum.startDate.characters(1, 7)));
    text.append(" - ").append(withoutControls(time.characters(1, 2))).append(":");
    text.append(withoutControls(time.characters(3, 2))).append(":");
    text.append(withoutControls(time.characters(5, 2))).append(lineEnd);
    text.append("Meas. Time: ").append(plainNumber(std::int64_t{spectrum.liveTime.wholeSeconds()}));
    return text.append(" sec").append(lineEnd);
}

}  // namespace

std::string csvText(const Spectrum& spectrum) {
    std::string text = headerText(spectrum);
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel) {
        appendColumn(text, channel, 6);
        text += ',';
        appendColumn(text, spectrum.counts[channel], 7);
        text += lineEnd;
    }
    return text;
}

bool countsFitCsv(const Spectrum& spectrum) {
    return std::ranges::all_of(
        spectrum.counts.span(0, spectrum.channelCount),
        [](std::int32_t counts) { return counts > -1'000'000 && counts < 10'000'000; });
}

bool saveAsCsv(Spectrum& spectrum, std::string& lastDirectory, Dialogs& dialogs) {
    const FileChoice choice = dialogs.saveFile({.title = "Save as CSV",
                                                .filters = {{"csv file(s)", "*.csv"}},
                                                .filterIndex = 1,
                                                .folder = lastDirectory});
    lastDirectory = currentDirectory();
    if (choice.path.empty())
        return false;
    spectrum.filePath = choice.path;
    replaceFile(spectrum.filePath, csvText(spectrum));
    return true;
}

}  // namespace kestrel
