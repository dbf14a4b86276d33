#include "base/keyed_lines.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"

namespace kestrel {
namespace {

// What would end a line, or vanish at its end, stands behind a backslash.
struct Escape {
    char sign;
    char written;
};
constexpr std::array<Escape, 4> escapes = {{{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}, {' ', 's'}}};

// A blank needs it only at the edge of a value.
std::string escaped(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto* escape = std::ranges::find(escapes, value[i], &Escape::sign);
        const bool plain =
            escape == escapes.end() || (value[i] == ' ' && i != 0 && i + 1 != value.size());
        text += plain ? std::string(1, value[i]) : std::string{'\\', escape->written};
    }
    return text;
}

char unescaped(char written) {
    const auto* escape = std::ranges::find(escapes, written, &Escape::written);
    return escape == escapes.end() ? written : escape->sign;
}

std::string valueOf(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = text[i] == '\\' && i + 1 < text.size();
        value += pair ? unescaped(text[++i]) : text[i];
    }
    return value;
}

}  // namespace

KeyedLines::KeyedLines(std::string_view contents) {
    for (std::string& line : splitLines(contents)) {
        if (line.ends_with('\r'))
            line.pop_back();
        lines_.push_back(std::move(line));
    }
}

std::size_t KeyedLines::lineOf(std::string_view key) const {
    std::size_t line = 0;
    for (; line < lines_.size(); ++line) {
        const std::string_view text = lines_[line];
        const std::size_t sign = text.find('=');
        if (sign != std::string_view::npos && trimBlanks(text.substr(0, sign)) == key)
            break;
    }
    return line;
}

std::optional<std::string> KeyedLines::find(std::string_view key) const {
    const std::size_t line = lineOf(key);
    if (line == lines_.size())
        return std::nullopt;
    const std::string_view text = lines_[line];
    return valueOf(trimBlanks(text.substr(text.find('=') + 1)));
}

void KeyedLines::set(std::string_view key, std::string_view value) {
    const std::size_t line = lineOf(key);
    if (line == lines_.size())
        lines_.emplace_back();
    lines_[line] = std::string(key) + '=' + escaped(value);
}

std::string KeyedLines::contents() const {
    std::string text;
    for (const std::string& line : lines_)
        text += line + '\n';
    return text;
}

std::string joinedLines(const std::vector<std::string>& texts) {
    std::string joined;
    for (std::size_t i = 0; i < texts.size(); ++i)
        joined += (i == 0 ? "" : "\n") + texts[i];
    return joined;
}

std::vector<std::string> splitLines(std::string_view joined) {
    std::vector<std::string> texts;
    for (std::size_t begin = 0; begin < joined.size();) {
        const std::size_t end = std::min(joined.find('\n', begin), joined.size());
        texts.emplace_back(joined.substr(begin, end - begin));
        begin = end + 1;
    }
    return texts;
}

}  // namespace kestrel
