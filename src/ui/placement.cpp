#include "ui/placement.h"

#include <algorithm>

#include <QApplication>
#include <QEvent>
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

// Of a window that is not maximised: from the corner of its client area to that of its frame. A
// maximised one has another frame, as a rule.
constexpr const char* frameOffset = "frameOffset";

// Where the window system has put it, it may cover the plot or a list.
void putBeside(QWidget& window) {
    const QWidget* owner = window.parentWidget();
    if (owner == nullptr || window.isModal() || window.testAttribute(Qt::WA_Moved))
        return;
    QList<QRect> others;
    for (const QWidget* other : QApplication::topLevelWidgets()) {
        if (other != &window && other->isVisible())
            others += other->frameGeometry();
    }
    if (const auto corner =
            cornerBeside(owner->window()->frameGeometry(), window.frameGeometry().size(),
                         window.screen()->availableGeometry(), others))
        window.move(*corner);
}

void fit(QWidget& window) {
    putBeside(window);
    const QRect screen = window.screen()->availableGeometry();
    const QSize frame = window.frameGeometry().size() - window.size();
    window.setProperty(frameOffset, window.pos() - window.geometry().topLeft());
    const QSize size = window.size().boundedTo(screen.size() - frame);
    if (size != window.size())
        window.resize(size);
    const QSize whole = window.size() + frame;
    const QPoint corner(std::clamp(window.x(), screen.left(),
                                   std::max(screen.left(), screen.right() + 1 - whole.width())),
                        std::clamp(window.y(), screen.top(),
                                   std::max(screen.top(), screen.bottom() + 1 - whole.height())));
    if (corner != window.pos())
        window.move(corner);
}

// Waits for the frame, fits the window, and goes.
class FrameWatch : public QObject {
  public:
    explicit FrameWatch(QWidget& window) : QObject(&window), window_(window) {
        window.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool mayHaveFrame =
            event->type() == QEvent::Move || event->type() == QEvent::Resize ||
            event->type() == QEvent::WindowActivate || event->type() == QEvent::Paint;
        if (mayHaveFrame && window_.frameGeometry() != window_.geometry()) {
            window_.removeEventFilter(this);
            // Not while the window is being moved.
            QMetaObject::invokeMethod(
                this,
                [this] {
                    if (!window_.isMaximized() && !window_.isFullScreen())
                        fit(window_);
                    deleteLater();
                },
                Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QWidget& window_;
};

}  // namespace

std::optional<QPoint> cornerBeside(const QRect& owner, QSize size, const QRect& screen,
                                   const QList<QRect>& others) {
    for (const QPoint corner :
         {QPoint(owner.right() + 1, owner.top()), QPoint(owner.right() + 1, screen.top()),
          QPoint(owner.right() + 1, screen.bottom() + 1 - size.height()),
          QPoint(owner.left() - size.width(), owner.top()),
          QPoint(owner.left(), owner.bottom() + 1),
          QPoint(owner.left(), owner.top() - size.height())}) {
        const QRect place(corner, size);
        const auto covers = [&place](const QRect& other) { return place.intersects(other); };
        if (screen.contains(place) && std::ranges::none_of(others, covers))
            return corner;
    }
    return std::nullopt;
}

void keepOnScreen(QWidget& window) {
    new FrameWatch(window);
}

WindowPlacement placementOf(const QWidget& window) {
    QRect place(window.pos(), window.size());
    if (window.isMaximized() || window.isFullScreen()) {
        // The place to go back to is that of the client area; windows are moved by their frame.
        place = window.normalGeometry().translated(window.property(frameOffset).toPoint());
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
