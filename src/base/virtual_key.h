// The numbers of the keys that the program knows, and of the keys held with them. Letters and
// digits have the number of their character.
#pragma once

namespace kestrel {

namespace virtual_key {
inline constexpr int space = 32;
inline constexpr int pageUp = 33;
inline constexpr int pageDown = 34;
inline constexpr int end = 35;
inline constexpr int home = 36;
inline constexpr int left = 37;
inline constexpr int up = 38;
inline constexpr int right = 39;
inline constexpr int down = 40;
inline constexpr int pageUpAlso = '?';
inline constexpr int pageDownAlso = '@';
inline constexpr int f1 = 112;
inline constexpr int f4 = 115;
inline constexpr int f5 = 116;
inline constexpr int f7 = 118;
inline constexpr int f10 = 121;
inline constexpr int f11 = 122;
inline constexpr int comma = 188;
inline constexpr int fullStop = 190;
}  // namespace virtual_key

// Shift state: 0 for no modifier, 1 Shift, 2 Ctrl, 4 Alt, or their sum.
inline constexpr int shiftHeld = 1;
inline constexpr int ctrlHeld = 2;

}  // namespace kestrel
