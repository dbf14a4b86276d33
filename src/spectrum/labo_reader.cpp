#include "spectrum/labo_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/input_file.h"
#include "spectrum/text_spectrum.h"

namespace kestrel {
namespace {

constexpr std::string_view marker = "Laboratory Equipment";
constexpr std::size_t blockSize = 65536;

bool hasMarker(InputFile& file) {
    std::vector<std::byte> block(blockSize);
    // Blocks overlap by what a marker across their border needs.
    for (std::uint64_t offset = 0; offset < file.size(); offset += blockSize - marker.size()) {
        const std::size_t count = file.read(offset, block);
        const std::string_view text(reinterpret_cast<const char*>(block.data()), count);
        if (text.find(marker) != std::string_view::npos)
            return true;
    }
    return false;
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
    InputFile file(path);
    return hasMarker(file) ? "This is a Labo file. How it holds its counts is not known." : "";
}

}  // namespace kestrel
