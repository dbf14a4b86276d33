#include "analysis/pkm_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "analysis/peak_data_sets.h"
#include "analysis/result_list.h"
#include "base/byte_reader.h"
#include "base/file_replacement.h"
#include "base/input_file.h"
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

// Many times a full list with its header.
constexpr std::size_t longestList = std::size_t{1} << 17;
constexpr std::int32_t highestChannel = 17000;

// The text up to the next line end, which is taken off as well.
std::string_view takeLine(std::string_view& text) {
    const std::size_t size = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, size);
    text.remove_prefix(std::min(size + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

bool isRule(std::string_view line, char sign) {
    return line.size() == resultLineLength &&
           line.find_first_not_of(sign) == std::string_view::npos;
}

// -1 where the field is no channel.
std::int32_t channelOf(std::string_view field) {
    const std::string_view digits = trimBlanks(field);
    std::int32_t channel = -1;
    const char* const last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, channel);
    const bool whole = error == std::errc{} && end == last;
    return whole && channel <= highestChannel ? channel : -1;
}

// Puts the regions of a line at the end; else tells what is wrong with it.
std::string takeRegions(std::string_view line, std::vector<PeakRegions>& regions) {
    if (line.size() < resultLineLength)
        return "is no line of a list";
    PeakRegions r;
    std::size_t place = line.size() - 6 * boundLength;
    for (std::int32_t* bound :
         {&r.bkg1Low, &r.bkg1High, &r.pkLow, &r.pkHigh, &r.bkg2Low, &r.bkg2High}) {
        *bound = channelOf(line.substr(place, boundLength));
        if (*bound < 0)
            return "has a bound that is no channel";
        place += boundLength;
    }
    if (const char* fault = faultOf(r))
        return fault;
    if (regions.size() == static_cast<std::size_t>(mostPeakSets))
        return "is one more than 128";
    regions.push_back(r);
    return {};
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

ReadRegions readPkmText(std::string_view text) {
    ReadRegions read = {};
    bool inList = false;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = takeLine(text);
        if (inList && isRule(line, '='))
            break;
        const std::string fault = inList ? takeRegions(line, read.regions) : std::string();
        if (!fault.empty())
            return {{}, "Line " + std::to_string(number) + ": " + fault};
        inList = inList || isRule(line, '-');
    }
    if (read.regions.empty())
        read.refusal = inList ? "The list is empty." : "There are no headings of a list.";
    return read;
}

ReadRegions loadPkmFile(const std::string& path) {
    InputFile file(path);
    const std::vector<std::byte> bytes = file.readFront(longestList);
    return readPkmText(ByteReader(bytes).textAt(0, bytes.size()));
}

}  // namespace kestrel
