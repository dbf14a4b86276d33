// A sheet of paper and the part of it inside its margins, in points (1/72 inch).
#pragma once

namespace kestrel {

struct PageLayout {
    double paperWidth = 0;
    double paperHeight = 0;
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    friend bool operator==(const PageLayout&, const PageLayout&) = default;
};

// A4, portrait, with margins of 10 mm.
inline constexpr PageLayout a4Page{595, 842, 28, 28, 539, 786};

}  // namespace kestrel
