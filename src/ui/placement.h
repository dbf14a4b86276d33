// Window places between runs, in twips.
#pragma once

#include <optional>

#include <QList>
#include <QRect>
#include <QWidget>

#include "base/window_placement.h"

namespace kestrel {

inline constexpr int twipsPerPixel = 15;

// A stored width of no more than this, in twips, is no window that anybody left.
inline constexpr int narrowestPlacement = 1000;

WindowPlacement placementOf(const QWidget& window);

// A corner for a window of this size, frame included, on the screen: at a side of `owner`, covering
// nothing of it nor of `others`. None where there is no room.
std::optional<QPoint> cornerBeside(const QRect& owner, QSize size, const QRect& screen,
                                   const QList<QRect>& others);

// Once the window has got its frame, which is not known before it is shown: makes it smaller and
// moves it so that the whole of it lies on its screen. One that nobody has placed goes beside the
// other windows if it can. To be called when it is shown.
void keepOnScreen(QWidget& window);

// Moves and sizes the window. One that would lie on no screen any more is brought onto the nearest,
// and none is made larger than its screen.
void place(QWidget& window, const WindowPlacement& placement);

}  // namespace kestrel
