// Takes the input as the start of a measurement: a date by itself, a date and time in the header of
// a CHN file, and lines of the text formats.
#include <memory>
#include <string>

#include "fuzz_input.h"
#include "spectrum/formats.h"
#include "spectrum/start_date.h"

namespace kestrel::fuzz {
namespace {

void readAs(FormatId id, const std::string& contents, bool mustLoad) {
    static const auto spectrum = std::make_unique<Spectrum>();
    InputFile file(writeFile("input", contents));
    const ReadResult result = kestrel::readAs(formatOf(id), file, *spectrum);
    require(result.end == Reading::Loaded || !mustLoad);
    formatStartDate(spectrum->startDate);
}

std::string chn(std::string start) {
    start.resize(16, ' ');
    return "\xff\xff" + std::string(4, '\0') + start.substr(0, 2) + std::string(8, '\0') +
           start.substr(2, 14) + std::string(2, '\0');
}

}  // namespace
}  // namespace kestrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::fuzz;
    const std::string text(asText(data, size));
    kestrel::formatStartDate(kestrel::FixedText<8>(text));
    const bool oneLine = text.find_first_of("\r\n") == std::string::npos;
    readAs(kestrel::FormatId::Chn, chn(text), true);
    readAs(kestrel::FormatId::DosOxford,
           "Elt:1\nReal Time:1\nAcq Date" + text + "\nChn    Counts\n0 1", oneLine);
    readAs(kestrel::FormatId::Canberra35,
           "SERIES 35+  V-2.00 LIVE TIME= TRUE TIME= TAG NO. =\nMEMORY=" + std::string(50, ' ') +
               text + "\nCHANNEL#\n1\n",
           false);
    readAs(kestrel::FormatId::WinOxford,
           "Conversion Gain:          1\nAcquisition Date:" + text +
               "\nElapsed Live Time: Elapsed Real Time: ID: A = B = C =" + std::string(14, '\n'),
           false);
    return 0;
}
