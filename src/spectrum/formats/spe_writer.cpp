#include "spectrum/formats/spe_writer.h"

#include <cstdint>
#include <string_view>

#include "base/number_text.h"
#include "spectrum/formats/written_record.h"

namespace kestrel {
namespace {

class Blocks {
  public:
    void line(const std::string& text) { text_.append(text).append("\r\n"); }
    std::string take() { return std::move(text_); }

  private:
    std::string text_;
};

// Month first, as nearly all programs write it.
std::string usDate(const LocalTime& time) {
    const std::string iso = isoTime(time, ' ');
    return iso.substr(5, 2) + "/" + iso.substr(8, 2) + "/" + iso.substr(0, 4) + iso.substr(10);
}

// A line that begins with a dollar sign would open a block.
std::string titleLine(const Spectrum& spectrum) {
    const std::string title = writtenText(spectrum.comment.view());
    return title.starts_with('$') ? "'" + title : title;
}

void writeCounts(const Spectrum& spectrum, Blocks& file) {
    file.line("$DATA:");
    file.line("0 " + std::to_string(spectrum.channelCount - 1));
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel)
        file.line(plainNumber(writtenCount(spectrum, channel)));
}

void writeCalibration(const Calibration& calibration, Blocks& file) {
    const std::string line = plainNumber(calibration.a) + " " + plainNumber(calibration.b);
    file.line("$ENER_FIT:");
    file.line(line);
    file.line("$MCA_CAL:");
    file.line("3");
    file.line(line + " " + plainNumber(calibration.c) + " keV");
}

}  // namespace

std::string speFile(const Spectrum& spectrum) {
    Blocks file;
    file.line("$SPEC_ID:");
    file.line(titleLine(spectrum));
    if (const auto start = writtenStart(spectrum)) {
        file.line("$DATE_MEA:");
        file.line(usDate(*start));
    }
    file.line("$MEAS_TIM:");
    file.line(writtenSeconds(spectrum.liveTime) + " " + writtenSeconds(spectrum.realTime));
    writeCounts(spectrum, file);
    if (const auto calibration = writtenCalibration(spectrum))
        writeCalibration(*calibration, file);
    file.line("$ENDRECORD:");
    return file.take();
}

void addSpeLosses(const Spectrum& spectrum, std::vector<std::string>& losses) {
    if (titleLine(spectrum).starts_with("'$"))
        losses.emplace_back(
            "In SPE a comment cannot begin with $: it gets an apostrophe in front.");
}

}  // namespace kestrel
