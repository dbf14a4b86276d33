#include "spectrum/formats/labo_reader.h"

#include <cstddef>
#include <string_view>
#include <vector>

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

ReadResult readLaboFile(InputFile& file, Spectrum&) {
    return refused(hasMarker(file) ? "This is a Labo file. How it holds its counts is not known."
                                   : "There is no text \"Laboratory Equipment\" in it.");
}

}  // namespace kestrel
