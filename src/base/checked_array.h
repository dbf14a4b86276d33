// Arrays whose every index is checked: one outside the bounds raises the subscript fault.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/runtime_fault.h"

namespace kestrel {

template <typename T, std::size_t N>
class CheckedArray {
  public:
    static constexpr std::size_t size() { return N; }

    T& operator[](std::int64_t index) { return items_[checked(index)]; }
    const T& operator[](std::int64_t index) const { return items_[checked(index)]; }

    // Entries first .. first + count - 1, checked once, for loops that must be fast. A count of 0
    // or less is an empty span.
    std::span<T> span(std::int64_t first, std::int64_t count) {
        checkRange(first, count);
        return count <= 0 ? std::span<T>{}
                          : std::span<T>(items_).subspan(static_cast<std::size_t>(first),
                                                         static_cast<std::size_t>(count));
    }
    std::span<const T> span(std::int64_t first, std::int64_t count) const {
        checkRange(first, count);
        return count <= 0 ? std::span<const T>{}
                          : std::span<const T>(items_).subspan(static_cast<std::size_t>(first),
                                                               static_cast<std::size_t>(count));
    }

    void fill(const T& value) { items_.fill(value); }

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

    friend bool operator==(const CheckedArray&, const CheckedArray&) = default;

  private:
    static std::size_t checked(std::int64_t index) {
        if (index < 0 || index >= static_cast<std::int64_t>(N))
            throw RuntimeFault(Fault::SubscriptOutOfRange);
        return static_cast<std::size_t>(index);
    }
    static void checkRange(std::int64_t first, std::int64_t count) {
        if (count > 0) {
            checked(first);
            checked(first + count - 1);
        }
    }

    std::array<T, N> items_{};
};

// One entry per channel, 0 to 17000: the range of every per-channel array of the system.
inline constexpr std::size_t channelLimit = 17001;
template <typename T>
using ChannelArray = CheckedArray<T, channelLimit>;

}  // namespace kestrel
