#include "spectrum/formats/n42_writer.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/number_text.h"
#include "spectrum/formats/file_text.h"
#include "spectrum/formats/written_record.h"

namespace kestrel {
namespace {

constexpr std::string_view head =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<RadInstrumentData xmlns="http://physics.nist.gov/N42/2011/N42">
  <RadInstrumentDataCreatorName>Kestrel</RadInstrumentDataCreatorName>
  <RadInstrumentInformation id="instrument">
    <RadInstrumentManufacturerName>unknown</RadInstrumentManufacturerName>
    <RadInstrumentModelName>unknown</RadInstrumentModelName>
    <RadInstrumentClassCode>Other</RadInstrumentClassCode>
    <RadInstrumentVersion>
      <RadInstrumentComponentName>Software</RadInstrumentComponentName>
      <RadInstrumentComponentVersion>unknown</RadInstrumentComponentVersion>
    </RadInstrumentVersion>
  </RadInstrumentInformation>
  <RadDetectorInformation id="detector">
)";
constexpr std::string_view belowDetectorName =
    R"(    <RadDetectorCategoryCode>Gamma</RadDetectorCategoryCode>
    <RadDetectorKindCode>Other</RadDetectorKindCode>
  </RadDetectorInformation>
)";
constexpr std::string_view aboveTimes =
    R"(  <RadMeasurement id="measurement">
    <MeasurementClassCode>NotSpecified</MeasurementClassCode>
)";
constexpr std::string_view end = R"(    </Spectrum>
  </RadMeasurement>
</RadInstrumentData>
)";

std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        switch (c) {
            case '&':
                safe += "&amp;";
                break;
            case '<':
                safe += "&lt;";
                break;
            case '>':
                safe += "&gt;";
                break;
            default:
                safe += c;
        }
    }
    return safe;
}

std::string xmlText(std::string_view text) {
    return escaped(asUtf8(writtenText(text)));
}

std::string line(std::string_view indent, std::string_view name, const std::string& content) {
    std::string text(indent);
    return text.append("<").append(name).append(">").append(content).append("</").append(name) +
           ">\n";
}

std::string detectorLine(const Spectrum& spectrum) {
    const std::string name = xmlText(spectrum.chnTrailer.detector.view());
    return name.empty() ? name : line("    ", "RadDetectorName", name);
}

std::string calibrationElement(const Calibration& calibration) {
    return "  <EnergyCalibration id=\"energy\">\n" +
           line("    ", "CoefficientValues",
                plainNumber(calibration.a) + " " + plainNumber(calibration.b) + " " +
                    plainNumber(calibration.c)) +
           "  </EnergyCalibration>\n";
}

std::string duration(Ticks time) {
    return "PT" + formatNumber(std::max(time.seconds(), 0.0), "0.00") + "S";
}

// Behind a zero stands how many there are in all.
std::string countedZeros(const Spectrum& spectrum) {
    std::string text;
    for (std::int32_t channel = 0; channel < spectrum.channelCount;) {
        const std::int64_t count = writtenCount(spectrum, channel);
        const std::int32_t first = channel++;
        text.append(text.empty() ? "" : " ").append(plainNumber(count));
        if (count != 0)
            continue;
        while (channel < spectrum.channelCount && writtenCount(spectrum, channel) == 0)
            ++channel;
        text.append(" ").append(std::to_string(channel - first));
    }
    return text;
}

std::string spectrumElement(const Spectrum& spectrum, bool calibrated) {
    std::string text = R"(    <Spectrum id="spectrum" radDetectorInformationReference="detector")";
    text += calibrated ? " energyCalibrationReference=\"energy\">\n" : ">\n";
    if (const std::string title = xmlText(spectrum.comment.view()); !title.empty())
        text += line("      ", "Remark", "Title: " + title);
    text += line("      ", "LiveTimeDuration", duration(spectrum.liveTime));
    return text + "      <ChannelData compressionCode=\"CountedZeroes\">" + countedZeros(spectrum) +
           "</ChannelData>\n";
}

}  // namespace

std::string n42File(const Spectrum& spectrum) {
    const std::optional<Calibration> calibration = writtenCalibration(spectrum);
    std::string file(head);
    file.append(detectorLine(spectrum)).append(belowDetectorName);
    file += calibration ? calibrationElement(*calibration) : "";
    file += aboveTimes;
    if (const auto start = writtenStart(spectrum))
        file += line("    ", "StartDateTime", isoTime(*start, 'T'));
    file += line("    ", "RealTimeDuration", duration(spectrum.realTime));
    return file.append(spectrumElement(spectrum, calibration.has_value())).append(end);
}

void addN42Losses(const Spectrum& spectrum, std::vector<std::string>& losses) {
    const std::string comment = writtenText(spectrum.comment.view());
    if (asUtf8(comment) != comment)
        losses.emplace_back(
            "N42 is text in UTF-8: other signs of the comment are written as those of Latin-1.");
}

}  // namespace kestrel
