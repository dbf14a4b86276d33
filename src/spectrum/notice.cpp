#include "spectrum/notice.h"

#include <algorithm>
#include <filesystem>

#include "base/text.h"

namespace kestrel {

void Notice::add(const std::string& line) {
    if (std::ranges::find(lines, line) == lines.end())
        lines.push_back(line);
}

std::string Notice::text() const {
    std::string all;
    for (const std::string& line : lines)
        all += (all.empty() ? "" : "\n") + line;
    return all;
}

std::string refusalNotice(const std::string& path, const Spectrum& before, const Spectrum& after) {
    const std::string name = withoutControls(std::filesystem::path(path).filename().string());
    Spectrum renamed = before;
    renamed.filePath = after.filePath;
    renamed.fileLeftOpen = after.fileLeftOpen;
    if (renamed == after)
        return name +
               " was refused; the name in results and printouts is the refused file's until "
               "another is opened.";
    return "Reading " + name +
           " failed half-way: what is shown mixes two spectra. Open a spectrum before you measure.";
}

}  // namespace kestrel
