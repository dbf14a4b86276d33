#include "ui/virtual_keys.h"

#include "base/virtual_key.h"

namespace kestrel {
namespace {

// Letters and digits have the number of their character. So have "?" and "@", which are the two
// further keys that expand and shrink.
bool isItsOwnNumber(int key) {
    return (key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
           key == Qt::Key_Question || key == Qt::Key_At;
}

int codeOf(int key) {
    if (isItsOwnNumber(key))
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return key - Qt::Key_F1 + virtual_key::f1;
    switch (key) {
        case Qt::Key_Space:
            return virtual_key::space;
        case Qt::Key_PageUp:
            return virtual_key::pageUp;
        case Qt::Key_PageDown:
            return virtual_key::pageDown;
        case Qt::Key_End:
            return virtual_key::end;
        case Qt::Key_Home:
            return virtual_key::home;
        case Qt::Key_Left:
            return virtual_key::left;
        case Qt::Key_Up:
            return virtual_key::up;
        case Qt::Key_Right:
            return virtual_key::right;
        case Qt::Key_Down:
            return virtual_key::down;
        case Qt::Key_Comma:
        case Qt::Key_Less:
            return virtual_key::comma;
        case Qt::Key_Period:
        case Qt::Key_Greater:
            return virtual_key::fullStop;
        default:
            return 0;
    }
}

}  // namespace

VirtualKey virtualKey(const QKeyEvent& event) {
    const int shift = shiftState(event.modifiers());
    // The signs count as the shifted keys that they are on most keyboards, also where they have a
    // key of their own.
    const bool sign = event.key() == Qt::Key_Less || event.key() == Qt::Key_Greater;
    return {codeOf(event.key()), sign ? shift | shiftHeld : shift};
}

int shiftState(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? shiftHeld : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
           (modifiers.testFlag(Qt::AltModifier) ? 4 : 0);
}

int buttonNumber(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton:
            return 1;
        case Qt::RightButton:
            return 2;
        case Qt::MiddleButton:
            return 4;
        default:
            return 0;
    }
}

}  // namespace kestrel
