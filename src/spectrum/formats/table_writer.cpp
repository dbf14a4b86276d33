#include "spectrum/formats/table_writer.h"

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/formats/written_record.h"

namespace kestrel {
namespace {

constexpr std::string_view lineEnd = "\r\n";

std::string labelled(std::string_view label, const std::string& value) {
    return value.empty() ? value : std::string(label) + "," + value + std::string(lineEnd);
}

std::string termsOf(const Calibration& calibration) {
    return plainNumber(calibration.a) + "," + plainNumber(calibration.b) + "," +
           plainNumber(calibration.c);
}

std::string headOf(const Spectrum& spectrum, const std::optional<Calibration>& calibration) {
    const std::string comment = writtenText(spectrum.comment.view());
    std::string head = labelled("Comment", csvField(comment));
    if (const auto start = writtenStart(spectrum))
        head += labelled("Start", isoTime(*start, ' '));
    head += labelled("Live time (s)", writtenSeconds(spectrum.liveTime));
    head += labelled("Real time (s)", writtenSeconds(spectrum.realTime));
    if (!calibration)
        return head.append("Channel,Counts").append(lineEnd);
    head += labelled("Calibration (keV)", termsOf(*calibration));
    return head.append("Channel,Energy (keV),Counts").append(lineEnd);
}

// There is always a point in them, so that no comma of the file can be a decimal one.
std::string energyField(const Calibration& calibration, double channel) {
    return formatNumber(calibration.a + calibration.b * channel + calibration.c * channel * channel,
                        "0.0000") +
           ",";
}

}  // namespace

std::string energyTable(const Spectrum& spectrum) {
    const std::optional<Calibration> calibration = writtenCalibration(spectrum);
    std::string table = headOf(spectrum, calibration);
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel) {
        table.append(std::to_string(channel)).append(",");
        table += calibration ? energyField(*calibration, channel) : "";
        table.append(plainNumber(writtenCount(spectrum, channel))).append(lineEnd);
    }
    return table;
}

void addTableLosses(const Spectrum& spectrum, std::vector<std::string>& losses) {
    const std::string comment = writtenText(spectrum.comment.view());
    if (tableField(comment) != comment)
        losses.emplace_back(
            "In a table the comment would be taken for a formula: it gets an apostrophe in front.");
}

}  // namespace kestrel
