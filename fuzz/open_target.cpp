// Opens the input as a spectrum file of one format, and then does what follows on the screen.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "base/runtime_fault.h"
#include "fuzz_input.h"
#include "spectrum/csv_export.h"
#include "spectrum/data_information.h"
#include "spectrum/formats.h"
#include "spectrum/open_spectrum.h"
#include "view/status_text.h"

namespace kestrel::fuzz {
namespace {

struct Session {
    Spectrum spectrum;
    DerivedArrays derived;
    std::vector<std::string> headerLines;
    Notice notice;
    SilentDialogs dialogs;
};

void useSpectrum(const Session& session) {
    const Spectrum& spectrum = session.spectrum;
    require(session.headerLines.size() == 6);
    dateLine(spectrum);
    commentLine(spectrum);
    liveTimeHeader(spectrum);
    // Line after line the same: not worth the time for long spectra.
    if (spectrum.channelCount <= 256)
        csvText(spectrum);
    const std::int16_t last = spectrum.channelCount;
    for (const int channel : {0, 1, last / 2, last - 1, int{last}})
        statusLine(spectrum, session.derived, static_cast<std::int16_t>(std::max(channel, 0)));
}

}  // namespace
}  // namespace kestrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::fuzz;
    static const auto session = std::make_unique<Session>();
    session->spectrum = {};
    constexpr auto id = kestrel::FormatId::KESTREL_FORMAT;
    session->spectrum.filePath =
        writeFile("input" + std::string(kestrel::formatOf(id).ending), asText(data, size));
    try {
        if (kestrel::readSpectrumByFormat(
                static_cast<int>(id),
                {session->spectrum, session->derived, session->headerLines, session->notice},
                session->dialogs))
            useSpectrum(*session);
    } catch (const kestrel::RuntimeFault&) {
        // One of the ends that a file may have.
    }
    return 0;
}
