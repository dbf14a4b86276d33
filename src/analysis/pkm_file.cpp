#include "analysis/pkm_file.h"

#include <filesystem>
#include <string_view>

#include "analysis/result_list.h"
#include "base/file_replacement.h"
#include "base/text.h"
#include "spectrum/file_name.h"

namespace kestrel {
namespace {

constexpr auto separator = static_cast<char>(std::filesystem::path::preferred_separator);

// An empty folder is the current one.
std::string withoutSeparator(std::string_view folder) {
    std::string_view trimmed = trimBlanks(folder);
    if (trimmed.empty())
        return ".";
    if (trimmed.ends_with(separator))
        trimmed.remove_suffix(1);
    return std::string(trimmed);
}

}  // namespace

std::string pkmFileName(const Spectrum& spectrum) {
    return baseName(spectrum) + ".pkm";
}

void writePkmFile(const Spectrum& spectrum, const std::string& folder,
                  const std::vector<std::string>& lines) {
    std::vector<std::string> all = resultHeader(spectrum);
    all.insert(all.end(), lines.begin(), lines.end());
    all.push_back(resultFooter());
    std::string contents;
    for (const std::string& line : all)
        contents += line + "\r\n";
    replaceFile(withoutSeparator(folder) + separator + pkmFileName(spectrum), contents);
}

}  // namespace kestrel
