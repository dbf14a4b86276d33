#include "analysis/pkm_file.h"

#include <filesystem>
#include <string_view>
#include <system_error>

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

std::string pathIn(const std::string& folder, const Spectrum& spectrum) {
    return withoutSeparator(folder) + separator + pkmFileName(spectrum);
}

// Also a link that leads nowhere.
bool isTaken(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

bool mayReplace(const std::string& path, const Spectrum& spectrum, Dialogs& dialogs) {
    return dialogs.message({.text = pkmFileName(spectrum) + " is there already.\nReplace it ?",
                            .title = "Check...",
                            .icon = Icon::Question,
                            .buttons = Buttons::OkCancel,
                            .details = path});
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
    replaceFile(pathIn(folder, spectrum), contents);
}

bool savePkmFile(const Spectrum& spectrum, const std::string& folder,
                 const std::vector<std::string>& lines, Dialogs& dialogs) {
    const std::string path = pathIn(folder, spectrum);
    if (isTaken(path) && !mayReplace(path, spectrum, dialogs))
        return false;
    writePkmFile(spectrum, folder, lines);
    return true;
}

}  // namespace kestrel
