// Text of a fixed number of single-byte characters: blank-padded on the right, cut to the width.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "base/text.h"

namespace kestrel {

template <std::size_t N>
class FixedText {
  public:
    FixedText() { bytes_.fill(' '); }
    explicit FixedText(std::string_view text) { assign(text); }

    // Left-justified, padded with blanks, cut to the width.
    void assign(std::string_view text) {
        bytes_.fill(' ');
        std::copy_n(text.begin(), std::min(text.size(), N), bytes_.begin());
    }

    // Text as it comes from a file: kept up to the first NUL, then as `assign`.
    void assignFromFile(std::string_view field) { assign(upToNul(field.substr(0, N))); }

    // All N characters, padding included.
    std::string_view view() const { return {bytes_.data(), N}; }
    // Characters `first` (counted from 1) to `first + count - 1`; must lie inside the width.
    std::string_view characters(std::size_t first, std::size_t count) const {
        return view().substr(first - 1, count);
    }
    std::string_view trimmed() const { return trimBlanks(view()); }

    friend bool operator==(const FixedText&, const FixedText&) = default;

  private:
    std::array<char, N> bytes_{};
};

}  // namespace kestrel
