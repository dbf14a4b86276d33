#include "view/picture_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

#include "base/input_file.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr PictureSize least{300, 200};
constexpr int greatest = 10000;
constexpr std::int64_t mostDots = 40'000'000;

struct Kind {
    PictureKind kind;
    const char* filter;
    const char* pattern;
    std::string_view ending;
};
constexpr std::array<Kind, 3> kinds = {{
    {PictureKind::Png, "PNG picture", "*.png", ".png"},
    {PictureKind::Svg, "SVG drawing", "*.svg", ".svg"},
    {PictureKind::Pdf, "PDF document", "*.pdf", ".pdf"},
}};

constexpr std::array<PictureSize, 3> usualSizes = {{{800, 500}, {1600, 1000}, {3200, 2000}}};

std::string textOf(PictureSize size) {
    return plainNumber(std::int64_t{size.width}) + " x " + plainNumber(std::int64_t{size.height});
}

std::optional<int> sideOf(std::string_view text) {
    const std::string_view digits = trimBlanks(text);
    if (digits.empty() || digits.size() > 5 || !std::ranges::all_of(digits, isDigit))
        return std::nullopt;
    return parseLeadingInteger(digits);
}

std::optional<PictureSize> askSize(PictureSize shown, Dialogs& dialogs) {
    ChoiceBox box{
        .title = "Save Picture", .prompt = "Size in dots", .items = {textOf(shown)}, .chosen = 0};
    std::ranges::transform(usualSizes, std::back_inserter(box.items), textOf);
    box.items.emplace_back("Another size...");
    const auto chosen = dialogs.choose(box);
    if (!chosen)
        return std::nullopt;
    if (*chosen + 1 < box.items.size())
        return *chosen == 0 ? shown : usualSizes.at(*chosen - 1);
    const std::string text =
        dialogs.input({.prompt = "Width and height in dots (ex. 2400 x 1200)", .title = box.title});
    const auto size = pictureSizeOf(text);
    if (!size && !text.empty())
        dialogs.message({.text = "That is no size for a picture.",
                         .icon = Icon::Exclamation,
                         .details = "From 300 x 200 up to 10000 x 4000."});
    return size;
}

PictureFile fileOf(const FileChoice& choice) {
    const std::string ending = toLower(std::filesystem::path(choice.path).extension().string());
    for (const Kind& kind : kinds) {
        if (kind.ending == ending)
            return {choice.path, kind.kind, {}};
    }
    const int last = static_cast<int>(kinds.size());
    const auto index = static_cast<std::size_t>(std::clamp(choice.filterIndex, 1, last) - 1);
    return {choice.path + std::string(kinds.at(index).ending), kinds.at(index).kind, {}};
}

}  // namespace

std::optional<PictureSize> pictureSizeOf(const std::string& text) {
    const std::string lower = toLower(text);
    const std::size_t sign = lower.find('x');
    if (sign == std::string::npos)
        return std::nullopt;
    const auto width = sideOf(std::string_view(lower).substr(0, sign));
    const auto height = sideOf(std::string_view(lower).substr(sign + 1));
    if (!width || !height || *width < least.width || *height < least.height ||
        std::max(*width, *height) > greatest || std::int64_t{*width} * *height > mostDots)
        return std::nullopt;
    return PictureSize{*width, *height};
}

std::optional<PictureFile> askPictureFile(const std::string& spectrumPath, PictureSize shown,
                                          std::string& lastDirectory, Dialogs& dialogs) {
    FileDialog dialog{.title = "Save Picture", .filters = {}, .folder = lastDirectory};
    for (const Kind& kind : kinds)
        dialog.filters.push_back({kind.filter, kind.pattern});
    dialog.fileName = std::filesystem::path(spectrumPath).stem().string();
    const FileChoice choice = dialogs.saveFile(dialog);
    lastDirectory = currentDirectory();
    if (choice.path.empty())
        return std::nullopt;
    PictureFile file = fileOf(choice);
    const auto size = file.kind == PictureKind::Png ? askSize(shown, dialogs) : shown;
    if (!size)
        return std::nullopt;
    file.size = *size;
    return file;
}

}  // namespace kestrel
