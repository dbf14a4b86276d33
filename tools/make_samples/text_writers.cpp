#include "make_samples/text_writers.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel::samples {
namespace {

constexpr std::string_view lineEnd = "\r\n";

std::string seconds(Ticks time, std::string_view pattern) {
    return formatNumber(time.seconds(), pattern);
}

// A line that is put together by columns, counted from 1.
class Line {
  public:
    Line& at(std::size_t column, std::string_view text) {
        text_.resize(column - 1, ' ');
        text_ += text;
        return *this;
    }
    Line& right(std::size_t column, std::size_t width, std::int64_t number) {
        return at(column, rightAligned(plainNumber(number), width));
    }
    std::string ended() const { return text_ + std::string(lineEnd); }

  private:
    std::string text_;
};

std::string labelled(std::string_view label, std::size_t column, std::string_view value) {
    return Line().at(1, label).at(column, value).ended();
}

std::string fullYear(const Spectrum& spectrum) {
    return (spectrum.startDate.characters(8, 1) == "1" ? "20" : "19") +
           std::string(spectrum.startDate.characters(6, 2));
}

std::string winOxfordStart(const Spectrum& spectrum) {
    return Line()
        .at(1, "Acquisition Date:")
        .at(20, spectrum.startDate.characters(1, 2))
        .at(22, "-")
        .at(23, spectrum.startDate.characters(3, 3))
        .at(26, "-")
        .at(27, fullYear(spectrum))
        .at(32, spectrum.startTime.characters(1, 2))
        .at(34, ":")
        .at(35, spectrum.startTime.characters(3, 2))
        .ended();
}

std::string canberra35Start(const Spectrum& spectrum) {
    return Line()
        .at(1, "MEMORY=1/1")
        .at(59, spectrum.startDate.characters(1, 2))
        .at(62, spectrum.startDate.characters(3, 3))
        .at(66, spectrum.startDate.characters(6, 2))
        .at(70, spectrum.startTime.characters(1, 2))
        .at(72, ":")
        .at(73, spectrum.startTime.characters(3, 2))
        .ended();
}

std::string dosOxfordStart(const Spectrum& spectrum) {
    const double hours = parseLeadingNumber(spectrum.startTime.characters(1, 2));
    const double half = hours > 12 ? hours - 12 : hours;
    std::string text = "Acq Date: ";
    text.append(spectrum.startDate.characters(1, 2)).append(" ");
    text.append(spectrum.startDate.characters(3, 3)).append(" ");
    text.append(fullYear(spectrum)).append(" ");
    text.append(formatNumber(half == 0 ? 12 : half, "00")).append(":");
    text.append(spectrum.startTime.characters(3, 2)).append(":");
    text.append(spectrum.startTime.characters(5, 2));
    return text.append(hours < 12 ? " am" : " pm").append(lineEnd);
}

}  // namespace

std::string winOxfordFile(const Spectrum& spectrum) {
    std::string file = labelled("Spectrum Export", 18, "Text");
    file += "ID:" + std::string(spectrum.comment.trimmed()) + "\r\n";
    file += winOxfordStart(spectrum);
    file += labelled("Elapsed Live Time:", 20, seconds(spectrum.liveTime, "0.00"));
    file += labelled("Elapsed Real Time:", 20, seconds(spectrum.realTime, "0.00"));
    file += labelled("Conversion Gain:", 27, plainNumber(std::int64_t{spectrum.channelCount}));
    file += "Energy = A * Ch^2 + B * Ch + C\r\n";
    file += labelled("Coefficient  A =", 54, plainNumber(spectrum.calCurrent.c));
    file += labelled("Coefficient  B =", 54, plainNumber(spectrum.calCurrent.b));
    file += labelled("Coefficient  C =", 54, plainNumber(spectrum.calCurrent.a));
    file += "\r\n\r\n\r\n\r\n  Chan    Counts\r\n";
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel)
        file += Line().right(1, 6, channel).right(8, 9, spectrum.counts[channel]).ended();
    return file;
}

std::string dosOxfordFile(const Spectrum& spectrum) {
    std::string file = dosOxfordStart(spectrum);
    file += labelled("Elt:", 12, seconds(spectrum.liveTime, "0.00") + " sec");
    file += labelled("Real Time:", 12, seconds(spectrum.realTime, "0.00") + " sec");
    file += "\r\nChn    Counts\r\n";
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel)
        file += Line().right(1, 5, channel).right(6, 8, spectrum.counts[channel]).ended();
    return file;
}

std::string canberra35File(const Spectrum& spectrum) {
    std::string file = "\r\nSERIES 35+  V-2.00\r\n\r\n";
    file += "TAG NO. = " + std::string(spectrum.comment.trimmed()) + "\r\n";
    file += canberra35Start(spectrum);
    file += Line()
                .at(17, "LIVE TIME=")
                .at(27, seconds(spectrum.liveTime, "0"))
                .at(38, "TRUE TIME=")
                .at(48, seconds(spectrum.realTime, "0"))
                .ended();
    file += "\r\n CHANNEL#\r\n";
    for (std::int32_t first = 0; first < spectrum.channelCount; first += 8) {
        Line line;
        line.right(2, 5, first);
        std::size_t column = 12;
        for (std::int32_t channel = first; channel < first + 8; ++channel, column += 9)
            line.right(column, 7, spectrum.counts[channel]);
        file += line.ended();
    }
    return file + "\r\nEND\r\n";
}

std::string naigE560File(const Spectrum& spectrum) {
    constexpr std::size_t bytesBeforeStatus = 2303;
    std::string file(spectrum.comment.trimmed());
    file += '\x7f';
    file.append(bytesBeforeStatus + 1, ' ');
    file += rightAligned(seconds(spectrum.liveTime, "0"), 7);
    file += rightAligned(seconds(spectrum.realTime, "0"), 7);
    for (std::int32_t channel = 2; channel < spectrum.channelCount; ++channel)
        file += rightAligned(plainNumber(std::int64_t{spectrum.counts[channel]}), 7);
    return file.append(lineEnd);
}

}  // namespace kestrel::samples
