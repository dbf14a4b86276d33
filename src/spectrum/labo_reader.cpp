#include "spectrum/labo_reader.h"

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/input_file.h"
#include "base/runtime_fault.h"
#include "spectrum/text_spectrum.h"

namespace kestrel {
namespace {

constexpr std::string_view marker = "Laboratory Equipment";
// Where the marker is looked for: a spectrum of 17001 channels is no longer than this.
constexpr std::size_t searchedFront = std::size_t{1} << 20U;

bool hasMarker(InputFile& file) {
    const std::vector<std::byte> front = file.readFront(searchedFront);
    const std::string_view text(reinterpret_cast<const char*>(front.data()), front.size());
    return text.find(marker) != std::string_view::npos;
}

}  // namespace

bool readLaboFile(Spectrum& spectrum, Dialogs& dialogs) {
    static_cast<void>(spectrumFileExists(spectrum, dialogs));
    return false;
}

bool readLaboV154File(Spectrum& spectrum, Dialogs& dialogs) {
    static_cast<void>(spectrumFileExists(spectrum, dialogs));
    return false;
}

std::string laboRefusal(const std::string& path) {
    if (!fileExists(path))
        return {};
    try {
        InputFile file(path);
        return hasMarker(file) ? "This is a Labo file. How it holds its counts is not known." : "";
    } catch (const RuntimeFault&) {
        return "The file cannot be read.";
    }
}

}  // namespace kestrel
