// Takes the input as the start of a measurement: a date by itself, a date and time in the header of
// a CHN file, and lines of the text formats.
#include <memory>
#include <string>

#include "base/runtime_fault.h"
#include "fuzz_input.h"
#include "spectrum/canberra35_reader.h"
#include "spectrum/chn_reader.h"
#include "spectrum/dos_oxford_reader.h"
#include "spectrum/start_date.h"
#include "spectrum/win_oxford_reader.h"

namespace kestrel::fuzz {
namespace {

using Reader = bool (*)(Spectrum&, Dialogs&);

void readAs(Reader reader, const std::string& contents, bool mustLoad) {
    static const auto spectrum = std::make_unique<Spectrum>();
    SilentDialogs dialogs;
    spectrum->filePath = writeFile("input", contents);
    try {
        require(reader(*spectrum, dialogs) || !mustLoad);
        formatStartDate(spectrum->startDate);
    } catch (const RuntimeFault&) {
        require(!mustLoad);
    }
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
    readAs(kestrel::readChnFile, chn(text), true);
    readAs(kestrel::readDosOxfordFile,
           "Elt:1\nReal Time:1\nAcq Date" + text + "\nChn    Counts\n0 1", oneLine);
    readAs(kestrel::readCanberra35File,
           "SERIES 35+  V-2.00 LIVE TIME= TRUE TIME= TAG NO. =\nMEMORY=" + std::string(50, ' ') +
               text + "\nCHANNEL#\n1\n",
           false);
    readAs(kestrel::readWinOxfordFile,
           "Conversion Gain:          1\nAcquisition Date:" + text +
               "\nElapsed Live Time: Elapsed Real Time: ID: A = B = C =" + std::string(14, '\n'),
           false);
    return 0;
}
