// Prints what the program's own recognition finds in spectrum files, a JSON line a file.
#include <cstdio>
#include <exception>
#include <numeric>
#include <string>

#include "base/input_file.h"
#include "spectrum/formats/energy_terms.h"
#include "spectrum/formats/exchange_formats.h"

namespace {

using kestrel::MeasuredSpectrum;

std::string quoted(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        std::array<char, 8> escaped{};
        const auto code = static_cast<unsigned char>(c);
        if (code < ' ' || code == '"' || code == '\\' || code > '~') {
            std::snprintf(escaped.data(), escaped.size(), "\\u%04x", unsigned{code});
            json += escaped.data();
        } else {
            json += c;
        }
    }
    return json + "\"";
}

std::string number(double value) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.17g", value);
    return text.data();
}

template <typename T, typename Text>
std::string list(const T& values, Text text) {
    std::string json;
    for (const auto& value : values)
        json.append(json.empty() ? "" : ",").append(text(value));
    return "[" + json + "]";
}

std::string startOf(const MeasuredSpectrum& spectrum) {
    if (!spectrum.start)
        return "null";
    const kestrel::LocalTime& t = *spectrum.start;
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "\"%04d-%02d-%02dT%02d:%02d:%02d\"", t.year, t.month,
                  t.day, t.hour, t.minute, t.second);
    return text.data();
}

std::string factsOf(const MeasuredSpectrum& spectrum) {
    const auto optional = [](const std::optional<double>& value) {
        return value ? number(*value) : std::string("null");
    };
    const auto fitted = kestrel::fittedCalibration(spectrum);
    std::string calibration = "null";
    if (fitted)
        calibration = "[" + number(fitted->calibration.a) + "," + number(fitted->calibration.b) +
                      "," + number(fitted->calibration.c) + "]";
    return "{\"name\":" + quoted(spectrum.name) + ",\"title\":" + quoted(spectrum.title) +
           ",\"detector\":" + quoted(spectrum.detector) +
           ",\"live_s\":" + optional(spectrum.liveSeconds) +
           ",\"real_s\":" + optional(spectrum.realSeconds) + ",\"start\":" + startOf(spectrum) +
           ",\"calibration\":" + calibration +
           ",\"coefficients\":" + list(spectrum.coefficients, number) +
           ",\"notices\":" + list(spectrum.notices, quoted) +
           ",\"counts\":" + list(spectrum.counts, number) + "}";
}

std::string factsOf(const std::string& path) {
    try {
        kestrel::InputFile file(path);
        return list(kestrel::readExchangeFile(file),
                    [](const MeasuredSpectrum& spectrum) { return factsOf(spectrum); });
    } catch (const std::exception& error) {
        return quoted(error.what());
    }
}

}  // namespace

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i)
        std::printf("%s\n", factsOf(std::string(arguments[i])).c_str());
    return 0;
}
