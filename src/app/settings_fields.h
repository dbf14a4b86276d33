// Fields of the settings file: numbers bare, texts in double quotes, a quote inside a text doubled,
// commas between the fields of a line. Bytes pass as they are.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/number_text.h"

namespace kestrel {

// Reads field after field; a line end separates fields just as a comma does. A quoted text ends at
// its closing quote, or with its line where there is none; an unquoted one at the comma or line
// end.
class FieldReader {
  public:
    explicit FieldReader(std::string contents) : contents_(std::move(contents)) {}

    // Goes to the start, then behind the first field that equals `header`; false when there is
    // none.
    bool find(std::string_view header);

    // The next field. Faults: InputPastEnd, also for a quoted text that the end of the file cuts.
    std::string text();
    // The number that the next field begins with, 0 for none. Faults: InputPastEnd, Overflow.
    double number();
    std::int16_t int16();
    std::int32_t int32();

  private:
    std::optional<std::string> next();
    std::optional<std::string> quoted();
    std::string unquoted();
    std::size_t fieldEnd() const;
    void passSeparator();

    std::string contents_;
    std::size_t position_ = 0;
};

class FieldWriter {
  public:
    // One line, ended by CR LF, with these texts and numbers. A line end inside a text, where it
    // would begin a line of its own, becomes a blank.
    template <typename First, typename... Rest>
    void record(const First& first, const Rest&... rest) {
        add(first);
        ((contents_ += ',', add(rest)), ...);
        contents_ += "\r\n";
    }

    const std::string& contents() const { return contents_; }

  private:
    void add(std::string_view text);
    void add(double number) { contents_ += plainNumber(number); }
    void add(std::integral auto number) { contents_ += plainNumber(std::int64_t{number}); }

    std::string contents_;
};

}  // namespace kestrel
