// Takes the first line of the input as a text to look for in the rest, and the whole as lines.
#include <string>

#include "base/input_file.h"
#include "base/text.h"
#include "fuzz_input.h"

namespace kestrel::fuzz {
namespace {

void search(std::string_view text, std::string_view part) {
    const std::size_t expected = toUpper(text).find(toUpper(part));
    require(findIgnoringCase(text, part) == expected);
    if (expected != std::string_view::npos)
        require(equalIgnoringCase(text.substr(expected, part.size()), part));
    rightAligned(text, part.size());
    charactersPadded(text, part.size() + 1, text.size());
    require(trimBlanks(text).size() <= text.size());
}

void readLines(const std::string& path) {
    InputFile file(path);
    LineReader lines(file);
    std::size_t characters = 0;
    for (std::string_view line; lines.next(line);)
        characters += line.size() + 1;
    require(characters <= file.size() + 1);
}

}  // namespace
}  // namespace kestrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::fuzz;
    const std::string_view text = asText(data, size);
    const std::size_t end = text.find('\n');
    if (end != std::string_view::npos)
        search(text.substr(end + 1), text.substr(0, end));
    readLines(writeFile("input", text));
    return 0;
}
