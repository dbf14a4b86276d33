#include "base/qt/placement.h"

#include <algorithm>

#include <QGuiApplication>
#include <QScreen>

#include "base/integers.h"

namespace kestrel {
namespace {

std::int32_t twips(int pixels) {
    return narrow32(std::int64_t{pixels} * twipsPerPixel);
}

QRect availableAround(QPoint point) {
    const QScreen* screen = QGuiApplication::screenAt(point);
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    return screen->availableGeometry();
}

}  // namespace

WindowPlacement placementOf(const QWidget& window) {
    QRect place(window.pos(), window.size());
    if (window.isMaximized() || window.isFullScreen()) {
        // The place to go back to is that of the client area; windows are moved by their frame.
        place = window.normalGeometry().translated(window.pos() - window.geometry().topLeft());
    }
    return {twips(place.x()), twips(place.y()), twips(place.width()), twips(place.height())};
}

void place(QWidget& window, const WindowPlacement& placement) {
    const QPoint corner(placement.left / twipsPerPixel, placement.top / twipsPerPixel);
    const QRect screen = availableAround(corner + QPoint(1, 1));
    const QSize size = QSize(placement.width / twipsPerPixel, placement.height / twipsPerPixel)
                           .expandedTo(QSize(1, 1))
                           .boundedTo(screen.size());
    const int x =
        std::clamp(corner.x(), screen.left(), screen.left() + screen.width() - size.width());
    const int y =
        std::clamp(corner.y(), screen.top(), screen.top() + screen.height() - size.height());
    window.resize(size);
    window.move(x, y);
}

}  // namespace kestrel
