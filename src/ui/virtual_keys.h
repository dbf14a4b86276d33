// Qt's keys and buttons as the virtual-key numbers, shift states and button numbers of the key
// table.
#pragma once

#include <QKeyEvent>
#include <QMouseEvent>

namespace kestrel {

struct VirtualKey {
    int code = 0;  // 0: none that the program knows
    int shift = 0;
};

VirtualKey virtualKey(const QKeyEvent& event);

// Shift 1, Ctrl 2, Alt 4, or their sum.
int shiftState(Qt::KeyboardModifiers modifiers);

// Left 1, right 2, middle 4; 0 for any other.
int buttonNumber(Qt::MouseButton button);

}  // namespace kestrel
