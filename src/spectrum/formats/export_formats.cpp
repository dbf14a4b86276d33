#include "spectrum/formats/export_formats.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "spectrum/formats/chn_writer.h"
#include "spectrum/formats/n42_writer.h"
#include "spectrum/formats/spe_writer.h"
#include "spectrum/formats/table_writer.h"
#include "spectrum/formats/tka_writer.h"
#include "spectrum/formats/written_record.h"

namespace kestrel {
namespace {

using Sentences = std::vector<std::string>;

constexpr std::array<ExportFormat, 5> formats = {{
    {.name = "ANSI N42.42 of 2012 (n42)",
     .shortName = "N42",
     .ending = ".n42",
     .write = n42File,
     .addOwnLosses = addN42Losses,
     .placesFor = {.start = true, .calibration = true, .comment = true, .detector = true},
     .fewestChannels = 8},
    {.name = "IAEA spectrum (spe)",
     .shortName = "SPE",
     .ending = ".spe",
     .write = speFile,
     .addOwnLosses = addSpeLosses,
     .placesFor = {.start = true, .calibration = true, .comment = true}},
    {.name = "ORTEC, SEIKO (chn)",
     .shortName = "CHN",
     .ending = ".chn",
     .write = trailedChnFile,
     .addOwnLosses = addChnLosses,
     .placesFor = {true, true, true, true, true},
     .keepsFields = true},
    {.name = "Times and counts (tka)",
     .shortName = "TKA",
     .ending = ".tka",
     .write = tkaFile,
     .addOwnLosses = addTkaLosses,
     .placesFor = {},
     .fewestChannels = 18},
    {.name = "Table with energies (csv)",
     .shortName = "A table",
     .ending = ".csv",
     .write = energyTable,
     .addOwnLosses = addTableLosses,
     .placesFor = {.start = true, .calibration = true, .comment = true},
     .fewestChannels = 16},
}};

// "no date, no calibration and no comment"
std::string joined(const Sentences& parts) {
    std::string text = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i)
        text.append(i + 1 < parts.size() ? ", " : " and ").append(parts[i]);
    return text;
}

// What the spectrum has and the format has no place for.
Sentences unplaced(const Spectrum& spectrum, const PlacesFor& placesFor) {
    Sentences parts;
    const auto part = [&](bool placed, bool there, const char* name) {
        if (!placed && there)
            parts.emplace_back(name);
    };
    part(placesFor.start, !spectrum.startDate.trimmed().empty(), "no date");
    part(placesFor.calibration, writtenCalibration(spectrum).has_value(), "no calibration");
    part(placesFor.comment, !spectrum.comment.trimmed().empty(), "no comment");
    part(placesFor.detector, !spectrum.chnTrailer.detector.trimmed().empty(), "no detector");
    part(placesFor.numbers, spectrum.mcaNumber != 0 || spectrum.segmentNumber != 1,
         "no numbers of analyser and segment");
    return parts;
}

bool hasCountsBelowZero(const Spectrum& spectrum) {
    return std::ranges::any_of(spectrum.counts.span(0, spectrum.channelCount),
                               [](std::int32_t count) { return count < 0; });
}

// Fields that say nothing which a reader would take.
void addUnusable(const Spectrum& spectrum, const ExportFormat& format, Sentences& losses) {
    const bool dated = !spectrum.startDate.trimmed().empty();
    if (format.placesFor.start && dated && !writtenStart(spectrum))
        losses.emplace_back("The start is no time of the calendar, and is left out.");
    if (format.placesFor.calibration && !writtenCalibration(spectrum))
        losses.emplace_back(
            "The energies of the calibration do not rise over the channels; it is left out.");
    if (hasCountsBelowZero(spectrum))
        losses.emplace_back("Counts below 0 are written as 0.");
    if (std::min(spectrum.liveTime.count, spectrum.realTime.count) < 0)
        losses.emplace_back("Times below 0 are written as 0.");
}

}  // namespace

std::span<const ExportFormat> exportFormats() {
    return formats;
}

std::vector<std::string> whatIsLost(const Spectrum& spectrum, const ExportFormat& format) {
    Sentences losses;
    const std::string name(format.shortName);
    if (const Sentences parts = unplaced(spectrum, format.placesFor); !parts.empty())
        losses.push_back(name + " keeps " + joined(parts) + ".");
    if (!spectrum.details.empty())
        losses.push_back(name + " keeps only the first six lines of Data Inform.");
    if (!format.keepsFields)
        addUnusable(spectrum, format, losses);
    if (spectrum.channelCount < format.fewestChannels)
        losses.push_back("Fewer than " + std::to_string(format.fewestChannels) +
                         " channels are not taken for a spectrum in this format.");
    format.addOwnLosses(spectrum, losses);
    return losses;
}

}  // namespace kestrel
