#include "spectrum/formats/measured_spectrum.h"

#include <utility>

#include "base/number_text.h"

namespace kestrel {

std::vector<MeasuredSpectrum> asOnly(MeasuredSpectrum spectrum) {
    std::vector<MeasuredSpectrum> spectra;
    spectra.push_back(std::move(spectrum));
    return spectra;
}

std::string FilePlace::text() const {
    return (line == 0 ? "" : "Line " + std::to_string(line) + ": ") + std::string(part);
}

std::size_t checkedChannelCount(double channels, const FilePlace& place) {
    if (!(channels >= 1 && channels <= static_cast<double>(mostFileChannels)))
        throw FormatError(place.text() + "A spectrum has 1 to " + std::to_string(mostFileChannels) +
                          " channels, not " + plainNumber(channels) + ".");
    return static_cast<std::size_t>(channels);
}

}  // namespace kestrel
