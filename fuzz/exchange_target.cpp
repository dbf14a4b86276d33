// Files of the exchange formats: each is refused with a reason or gives spectra that can be loaded.
// KESTREL_EXCHANGE is the format's place in the table; without it the content decides.

#include <memory>

#include "fuzz_input.h"
#include "spectrum/formats/exchange_formats.h"
#include "spectrum/formats/loaded_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel;
    static const auto spectrum = std::make_unique<Spectrum>();
    try {
#ifdef KESTREL_EXCHANGE
        const ExchangeFormat& format = exchangeFormats()[KESTREL_EXCHANGE];
        const auto read = [&](std::string_view bytes) { return readExchangeAs(format, bytes); };
#else
        const auto read = readExchangeBytes;
#endif
        const std::vector<MeasuredSpectrum> spectra = read(fuzz::asText(data, size));
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
