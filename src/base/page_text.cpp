#include "base/page_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/palette.h"

namespace kestrel {
namespace {

constexpr double columnPoints = 6;  // 12 columns an inch
constexpr double linePoints = 12;   // 6 lines an inch
constexpr double firstColumn = 10;
constexpr int zoneCharacters = 14;

// Whether a character of UTF-8 goes on with this byte.
bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

PageText::PageText(Canvas& canvas, const PageLayout& layout, int widest) : canvas_(canvas) {
    canvas_.setScale({0, 0, layout.width / columnPoints, layout.height / linePoints});
    canvas_.setForeColour(standardPalette[palette_number::black]);
    lineHeight_ = canvas_.textHeight();
    const double spare = canvas_.scale().right - widest * canvas_.textWidth("0");
    left_ = std::clamp(spare, 0.0, firstColumn);
}

bool PageText::hasRoom(std::size_t lines) const {
    return y_ + static_cast<double>(lines) * lineHeight_ <= canvas_.scale().bottom;
}

// The most bytes of `text` that fit; at least one, and all where not even that has room.
std::size_t PageText::fitting(std::string_view text) const {
    const double room = canvas_.scale().right - left_;
    const double column = canvas_.textWidth("0");
    if (canvas_.textWidth(text) <= room || text.size() == 1 || !(room >= column && column > 0))
        return text.size();
    // A column holds three bytes at most, those of a half-width katakana.
    std::size_t end = text.size() - 1;
    if (3 * room / column < static_cast<double>(end))
        end = static_cast<std::size_t>(3 * room / column);
    while (end > 1 && (continues(text[end]) || canvas_.textWidth(text.substr(0, end)) > room))
        --end;
    while (end < text.size() && continues(text[end]))
        ++end;
    const std::size_t slash = text.substr(0, end).rfind('/');
    return slash == std::string_view::npos || slash == 0 || end == text.size() ? end : slash + 1;
}

std::vector<std::string> PageText::broken(std::string_view text) const {
    std::vector<std::string> pieces;
    do {
        const std::size_t size = text.empty() ? 0 : fitting(text);
        pieces.emplace_back(text.substr(0, size));
        text.remove_prefix(size);
    } while (!text.empty());
    return pieces;
}

void PageText::print(std::string_view line) {
    canvas_.moveTo(left_, y_);
    canvas_.print(line);
    newLine();
}

void PageText::printZones(const std::vector<std::string>& items) {
    const double zone = zoneCharacters * canvas_.textWidth("0");
    double x = left_;
    for (const std::string& item : items) {
        const double width = canvas_.textWidth(item);
        if (x > left_ && x + width > canvas_.scale().right) {
            newLine();
            x = left_;
        }
        const std::vector<std::string> pieces = broken(item);
        for (const std::string& piece : pieces) {
            if (&piece != &pieces.front())
                newLine();
            canvas_.moveTo(x, y_);
            canvas_.print(piece);
        }
        x = (std::floor((x + canvas_.textWidth(pieces.back())) / zone) + 1) * zone;
    }
    newLine();
}

}  // namespace kestrel
