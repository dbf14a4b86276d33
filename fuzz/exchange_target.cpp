// Files of the exchange formats, by their content: each is refused with a reason or gives spectra
// that can be loaded.

#include <memory>

#include "fuzz_input.h"
#include "spectrum/formats/exchange_formats.h"
#include "spectrum/formats/loaded_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel;
    static const auto spectrum = std::make_unique<Spectrum>();
    try {
        const std::vector<MeasuredSpectrum> spectra = readExchangeBytes(fuzz::asText(data, size));
        fuzz::require(preferredSpectrum(spectra) < spectra.size());
        for (const MeasuredSpectrum& measured : spectra) {
            fuzz::require(!measured.counts.empty() && measured.counts.size() <= mostFileChannels);
            takeMeasured(measured, channelsToGroup(measured), *spectrum);
            fuzz::require(spectrum->channelCount > 0);
        }
    } catch (const FormatError&) {
    }
    return 0;
}
