// Colours of the canvas as Qt has them.
#pragma once

#include <QColor>

#include "base/canvas.h"

namespace kestrel {

inline QColor toQColor(Colour colour) {
    return {colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF};
}

}  // namespace kestrel
