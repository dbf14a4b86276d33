#include "analysis/calibration_file.h"

#include <charconv>
#include <optional>
#include <vector>

#include "base/byte_reader.h"
#include "base/file_replacement.h"
#include "base/input_file.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::string_view title = "Kestrel peak calibration";
constexpr std::string_view lineWord = "curve line";
constexpr std::string_view parabolaWord = "curve parabola";
constexpr std::size_t mostPoints = 1000;
constexpr std::size_t longestFile = std::size_t{1} << 17;
constexpr double highestChannel = 17000;
constexpr double highestEnergy = 1e5;  // keV

std::vector<std::string_view> parts(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> found;
    while (true) {
        const std::size_t start = text.find_first_not_of(separators);
        if (start == std::string_view::npos)
            return found;
        text.remove_prefix(start);
        const std::size_t size = std::min(text.find_first_of(separators), text.size());
        found.push_back(text.substr(0, size));
        text.remove_prefix(size);
    }
}

// The whole field, in the range.
std::optional<double> numberIn(std::string_view field, double low, double high) {
    double value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc{} || end != field.data() + field.size())
        return std::nullopt;
    // Neither holds for what is not a number.
    return value >= low && value <= high ? std::optional(value) : std::nullopt;
}

std::optional<CalibrationPoint> pointOf(std::string_view line) {
    const auto fields = parts(line, " \t");
    if (fields.size() != 4 || (fields[3] != "used" && fields[3] != "unused"))
        return std::nullopt;
    const auto channel = numberIn(fields[0], 0, highestChannel);
    const auto error = numberIn(fields[1], 0, highestChannel);
    const auto energy = numberIn(fields[2], 1e-3, highestEnergy);
    if (!channel || !error || !energy)
        return std::nullopt;
    return CalibrationPoint{*channel, *error, *energy, fields[3] == "used"};
}

ReadPoints refusedBecause(std::string why) {
    return {{}, std::move(why)};
}

}  // namespace

std::string calibrationText(const CalibrationPoints& points) {
    std::string text(title);
    text.append("\n").append(points.curve == CalibrationCurve::Line ? lineWord : parabolaWord);
    for (const CalibrationPoint& point : points.points)
        text += "\n" + plainNumber(point.channel) + " " + plainNumber(point.channelError) + " " +
                plainNumber(point.energy) + (point.isUsed ? " used" : " unused");
    return text + "\n";
}

ReadPoints readCalibrationText(std::string_view text) {
    const auto lines = parts(text.substr(0, longestFile), "\r\n");
    if (lines.empty() || trimBlanks(lines[0]) != title)
        return refusedBecause("This is no file of a peak calibration.");
    if (lines.size() < 2 || (lines[1] != lineWord && lines[1] != parabolaWord))
        return refusedBecause("Line 2 names no curve.");
    if (text.size() > longestFile || lines.size() > mostPoints + 2)
        return refusedBecause("The file holds more than " + std::to_string(mostPoints) + " peaks.");
    ReadPoints read;
    read.points.curve = lines[1] == lineWord ? CalibrationCurve::Line : CalibrationCurve::Parabola;
    for (std::size_t i = 2; i < lines.size(); ++i) {
        const auto point = pointOf(lines[i]);
        if (!point)
            return refusedBecause("Line " + std::to_string(i + 1) + " is no peak.");
        read.points.points.push_back(*point);
    }
    return read;
}

void saveCalibration(const std::string& path, const CalibrationPoints& points) {
    replaceFile(path, calibrationText(points));
}

ReadPoints loadCalibration(const std::string& path) {
    InputFile file(path);
    // One byte more, by which a file that is too long is known.
    const std::vector<std::byte> bytes = file.readFront(longestFile + 1);
    return readCalibrationText(ByteReader(bytes).textAt(0, bytes.size()));
}

}  // namespace kestrel
