#include "view/picture_box.h"

#include <algorithm>
#include <cmath>

#include <QClipboard>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QWindow>

#include "base/palette.h"
#include "ui/colours.h"
#include "ui/fonts.h"
#include "ui/virtual_keys.h"

namespace kestrel {
namespace {

constexpr double plotFontPoints = 10;
constexpr int notch = QWheelEvent::DefaultDeltasPerStep;

}  // namespace

PictureBox::PictureCanvas::PictureCanvas(QWidget& owner)
    : PainterCanvas(fixedPitchFont(plotFontPoints)), owner_(owner) {}

void PictureBox::PictureCanvas::clear(Colour background) {
    PainterCanvas::clear(background);
    owner_.update();
}

PictureBox::PictureBox(QWidget* parent) : QWidget(parent), canvas_(*this) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Spectrum plot"));
}

const QImage& PictureBox::picture() {
    canvas_.finish();
    return picture_;
}

QSize PictureBox::dots() const {
    const double ratio = devicePixelRatioF();
    return QSize(static_cast<int>(std::ceil(width() * ratio)),
                 static_cast<int>(std::ceil(height() * ratio)))
        .expandedTo(QSize(1, 1));
}

void PictureBox::makePicture() {
    const double ratio = devicePixelRatioF();
    canvas_.attach(nullptr, dots(), ratio);  // the old picture goes
    picture_ = QImage(dots(), QImage::Format_RGB32);
    picture_.fill(Qt::black);
    canvas_.attach(&picture_, picture_.size(), ratio);
}

void PictureBox::placeCursorMark(const CursorMark& mark) {
    update(strip(mark_));
    mark_ = mark;
    update(strip(mark_));
}

// The column of the widget that a mark can touch.
QRect PictureBox::strip(const CursorMark& mark) const {
    if (!mark.shown)
        return {};
    const double ratio = devicePixelRatioF();
    const int x = qRound(canvas_.toDevice(mark.x, 0).x() / ratio);
    return {x - 2, 0, 5, height()};
}

void PictureBox::paintEvent(QPaintEvent* event) {
    seen_ = true;
    canvas_.finish();
    const double ratio = devicePixelRatioF();
    QPainter painter(this);
    painter.setClipRegion(event->region());
    // Dot by dot, whatever fraction the pixel ratio is.
    painter.scale(1.0 / ratio, 1.0 / ratio);
    painter.drawImage(QPointF(0, 0), picture_);
    if (mark_.shown) {
        const QPoint top = canvas_.toDevice(mark_.x, CursorMark::top);
        const QPoint bottom = canvas_.toDevice(mark_.x, CursorMark::bottom);
        const int width = std::max(1, qRound(ratio));
        painter.fillRect(QRect(top.x() - width / 2, top.y(), width, bottom.y() - top.y() + 1),
                         toQColor(standardPalette[CursorMark::colour]));
    }
}

void PictureBox::resizeEvent(QResizeEvent*) {
    makePicture();
    emit resized();
}

void PictureBox::showEvent(QShowEvent*) {
    connect(window()->windowHandle(), &QWindow::screenChanged, this, &PictureBox::followScreen,
            Qt::UniqueConnection);
}

// On a screen of another pixel ratio the picture is made anew, so that it stays sharp.
void PictureBox::followScreen() {
    if (dots() == picture_.size())
        return;
    makePicture();
    emit rescaled();
}

void PictureBox::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setPixmap(grab());
        return;
    }
    const VirtualKey key = virtualKey(*event);
    if (key.code == 0)
        event->ignore();
    else
        emit keyDown(key.code, key.shift);
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
    const double ratio = devicePixelRatioF();
    emit mouseDown(buttonNumber(event->button()), shiftState(event->modifiers()),
                   canvas_.userX(event->position().x() * ratio),
                   canvas_.userY(event->position().y() * ratio));
}

// A touchpad sends a notch in many small parts. What is left of one counts only in its direction.
void PictureBox::wheelEvent(QWheelEvent* event) {
    const int angle = event->angleDelta().y();
    if (angle * wheelAngle_ < 0)
        wheelAngle_ = 0;
    wheelAngle_ += angle;
    const int notches = wheelAngle_ / notch;
    wheelAngle_ %= notch;
    if (notches != 0)
        emit wheelTurned(notches, canvas_.userX(event->position().x() * devicePixelRatioF()));
}

}  // namespace kestrel
