// Text of lines "key=value", in which what is not known stays as it stands.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

class KeyedLines {
  public:
    KeyedLines() = default;
    // Blanks around keys and values are dropped. Of a key that comes twice the first counts.
    explicit KeyedLines(std::string_view contents);

    std::optional<std::string> find(std::string_view key) const;
    // In place of the line of this key, or behind the last line. Any text is kept as it is.
    void set(std::string_view key, std::string_view value);

    // One line a text, each ended by LF.
    std::string contents() const;

  private:
    std::size_t lineOf(std::string_view key) const;

    std::vector<std::string> lines_;
};

// Texts as one text, and back: between them stands a line end, which set() keeps.
std::string joinedLines(const std::vector<std::string>& texts);
std::vector<std::string> splitLines(std::string_view joined);

}  // namespace kestrel
