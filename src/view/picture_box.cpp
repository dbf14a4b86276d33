#include "view/picture_box.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include <QClipboard>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QStyleHints>
#include <QWindow>

#include "base/palette.h"
#include "ui/colours.h"
#include "ui/fonts.h"
#include "ui/text_codec.h"
#include "ui/virtual_keys.h"

namespace kestrel {
namespace {

constexpr int notch = QWheelEvent::DefaultDeltasPerStep;

// Lies over the picture where a drag will zoom to.
constexpr int bandStrength = 130;  // of 255

}  // namespace

QSize dotsOf(const QWidget& widget) {
    const double ratio = widget.devicePixelRatioF();
    return QSize(static_cast<int>(std::ceil(widget.width() * ratio)),
                 static_cast<int>(std::ceil(widget.height() * ratio)))
        .expandedTo(QSize(1, 1));
}

int lineDotsAt(double ratio) {
    return std::max(1, static_cast<int>(ratio));
}

PictureBox::PictureCanvas::PictureCanvas(QWidget& owner)
    : PainterCanvas(fixedPitchFont(PlotLook{}.textPoints())), owner_(owner) {}

void PictureBox::PictureCanvas::clear(Colour background) {
    PainterCanvas::clear(background);
    owner_.update();
}

PictureBox::PictureBox(QWidget* parent) : QWidget(parent), canvas_(*this) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Spectrum plot"));
}

const QImage& PictureBox::picture() {
    canvas_.finish();
    return picture_;
}

void PictureBox::makePicture() {
    const double ratio = devicePixelRatioF();
    canvas_.attach(nullptr, dotsOf(*this), ratio);  // the old picture goes
    picture_ = QImage(dotsOf(*this), QImage::Format_RGB32);
    picture_.fill(toQColor(palette_[palette_number::black]));
    canvas_.attach(&picture_, picture_.size(), ratio, lineDotsAt(ratio));
}

// Base line and channel ticks are drawn in what the drawing before has left.
void PictureBox::setLook(const PlotLook& look) {
    palette_ = plotPalette(look.colours);
    canvas_.setForeColour(palette_[palette_number::lightRed]);
    canvas_.setFontPoints(look.textPoints());
    makePicture();
    update();
}

void PictureBox::placeCursorMark(const CursorMark& mark) {
    update(strip(mark_));
    mark_ = mark;
    update(strip(mark_));
}

void PictureBox::placeTexts(std::vector<PlacedText> texts) {
    if (!texts.empty() || !texts_.empty())
        update();
    texts_ = std::move(texts);
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
    paintTexts(painter);
    QColor bandColour = toQColor(palette_[palette_number::grey]);
    bandColour.setAlpha(bandStrength);
    painter.fillRect(band(), bandColour);
    if (mark_.shown) {
        const QPoint top = canvas_.toDevice(mark_.x, CursorMark::top);
        const QPoint bottom = canvas_.toDevice(mark_.x, CursorMark::bottom);
        const int width = std::max(1, qRound(ratio));
        painter.fillRect(QRect(top.x() - width / 2, top.y(), width, bottom.y() - top.y() + 1),
                         toQColor(palette_[CursorMark::colour]));
    }
}

// Each on a ground of its own, so that it can be read over a curve.
void PictureBox::paintTexts(QPainter& painter) const {
    painter.setFont(canvas_.font());
    const QFontMetrics metrics(canvas_.font());
    for (const PlacedText& placed : texts_) {
        const QString text = toWindow(placed.text);
        const QRect box(canvas_.toDevice(placed.x, placed.y),
                        QSize(metrics.horizontalAdvance(text), metrics.height()));
        painter.fillRect(box, toQColor(palette_[palette_number::black]));
        painter.setPen(toQColor(placed.colour));
        painter.drawText(box.left(), box.top() + metrics.ascent(), text);
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
    if (dotsOf(*this) == picture_.size())
        return;
    makePicture();
    emit rescaled();
}

void PictureBox::keyPressEvent(QKeyEvent* event) {
    endDrag();
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

double PictureBox::userX(const QPointF& position) const {
    return canvas_.userX(position.x() * devicePixelRatioF());
}

QRect PictureBox::band() const {
    if (!drag_ || !drag_->begun)
        return {};
    const QPoint from = canvas_.toDevice(drag_->from, CursorMark::top);
    const QPoint to = canvas_.toDevice(drag_->to, 0);
    return QRect(from, to).normalized();
}

void PictureBox::endDrag() {
    if (drag_ && drag_->begun)
        update();
    drag_.reset();
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
    endDrag();
    const double x = userX(event->position());
    const int shift = shiftState(event->modifiers());
    if (event->button() == Qt::LeftButton)
        drag_ = {.from = x, .to = x, .startX = qRound(event->position().x()), .shift = shift};
    emit mouseDown(buttonNumber(event->button()), shift, x,
                   canvas_.userY(event->position().y() * devicePixelRatioF()));
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
    const double x = userX(event->position());
    if (drag_ && event->buttons().testFlag(Qt::LeftButton)) {
        const int way = std::abs(qRound(event->position().x()) - drag_->startX);
        drag_->begun = drag_->begun || way >= QGuiApplication::styleHints()->startDragDistance();
        drag_->to = x;
        update();
    }
    emit pointerMoved(x);
    if (drag_ && drag_->begun)
        emit dragging(drag_->shift, drag_->from, x);
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    if (!drag_ || event->button() != Qt::LeftButton)
        return;
    const Drag drag = *drag_;
    endDrag();
    if (drag.begun)
        emit dragged(drag.shift, drag.from, userX(event->position()));
}

void PictureBox::leaveEvent(QEvent*) {
    emit pointerLeft();
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
        emit wheelTurned(notches, shiftState(event->modifiers()), userX(event->position()));
}

}  // namespace kestrel
