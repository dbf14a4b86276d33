#include "ui/painter_canvas.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <QColor>
#include <QFontMetricsF>
#include <QPen>

#include "ui/colours.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

// Coordinates beyond this many dots look the same, and Qt's painters are exact up to here.
constexpr double farthestDot = 30000.0;

int toDot(double value) {
    return std::isfinite(value) ? qRound(std::clamp(value, -farthestDot, farthestDot)) : 0;
}

// Dots per user unit; 0 for an axis without extent, which then is a single place.
double factor(int dots, double from, double to) {
    const double extent = to - from;
    return extent == 0.0 ? 0.0 : dots / extent;
}

}  // namespace

void PainterCanvas::attach(QPaintDevice* device, QSize dots, double dotsPerUnit, int lineDots) {
    painter_.reset();
    forgetPending();
    device_ = device;
    dots_ = dots;
    origin_ = {};
    dotsPerUnit_ = dotsPerUnit;
    lineDots_ = lineDots;
    // In dots, whatever resolution the device claims to have.
    font_.setPixelSize(std::max(1, qRound(fontPoints_ / pointsPerUnit * dotsPerUnit)));
    updateFactors();
}

void PainterCanvas::goOnIn(const QRect& part) {
    flush();
    if (QPainter* p = painter())
        p->translate(part.topLeft() - origin_);
    origin_ = part.topLeft();
    dots_ = part.size();
    updateFactors();
}

bool PainterCanvas::begin() {
    const QPainter* p = painter();
    return p != nullptr && p->isActive();
}

void PainterCanvas::finish() {
    flush();
    painter_.reset();
}

QPainter* PainterCanvas::painter() {
    if (device_ != nullptr && !painter_) {
        painter_ = std::make_unique<QPainter>(device_);
        painter_->setFont(font_);
    }
    return painter_.get();
}

void PainterCanvas::setScale(const UserScale& scale) {
    flush();
    scale_ = scale;
    updateFactors();
}

void PainterCanvas::updateFactors() {
    factorX_ = factor(dots_.width(), scale_.left, scale_.right);
    factorY_ = factor(dots_.height(), scale_.top, scale_.bottom);
}

QPoint PainterCanvas::toDevice(double x, double y) const {
    return {toDot((x - scale_.left) * factorX_), toDot((y - scale_.top) * factorY_)};
}

double PainterCanvas::userX(double dots) const {
    return factorX_ == 0.0 ? scale_.left : scale_.left + dots / factorX_;
}

double PainterCanvas::userY(double dots) const {
    return factorY_ == 0.0 ? scale_.top : scale_.top + dots / factorY_;
}

void PainterCanvas::clear(Colour background) {
    forgetPending();
    if (QPainter* p = painter())
        p->fillRect(QRect(QPoint(0, 0), dots_), toQColor(background));
    currentX_ = scale_.left;
    currentY_ = scale_.top;
}

void PainterCanvas::clipTo(const UserScale& part) {
    flush();
    QPainter* p = painter();
    if (p == nullptr)
        return;
    if (part == scale_)
        p->setClipping(false);
    else
        p->setClipRect(
            QRect(toDevice(part.left, part.top), toDevice(part.right, part.bottom)).normalized());
}

void PainterCanvas::moveTo(double x, double y) {
    flush();
    currentX_ = x;
    currentY_ = y;
}

void PainterCanvas::lineTo(double x, double y, Colour colour) {
    if (colour != pendingColour_)
        flush();
    pendingColour_ = colour;
    if (!column_.open)
        goTo(onCanvas(toDevice(currentX_, currentY_)));
    goTo(onCanvas(toDevice(x, y)));
    currentX_ = x;
    currentY_ = y;
}

// A line along the right edge of the scale, as the last channel tick is, takes the last dots.
QPoint PainterCanvas::onCanvas(QPoint dot) const {
    if (dot.x() == dots_.width())
        dot.rx() -= lineDots_;
    return dot;
}

void PainterCanvas::goTo(QPoint dot) {
    if (column_.open && column_.x != dot.x())
        leaveColumn(dot);
    if (!column_.open)
        column_ = {true, dot.x(), dot.y(), dot.y(), dot.y()};
    column_.least = std::min(column_.least, dot.y());
    column_.greatest = std::max(column_.greatest, dot.y());
    column_.last = dot.y();
}

// A line into the next column runs half the way in either; what is neither that nor level is left
// to the painter.
void PainterCanvas::leaveColumn(QPoint dot) {
    const int from = column_.last;
    Column next{true, dot.x(), dot.y(), dot.y(), dot.y()};
    if (dot.y() == from) {
        fills_.emplace_back(std::min(column_.x, dot.x()), from - lineDots_ / 2,
                            std::abs(dot.x() - column_.x), lineDots_);
    } else if (std::abs(dot.x() - column_.x) == 1) {
        const int middle = (from + dot.y()) / 2;
        column_.least = std::min(column_.least, middle);
        column_.greatest = std::max(column_.greatest, middle);
        next.least = std::min(dot.y(), middle);
        next.greatest = std::max(dot.y(), middle);
    } else {
        slopes_.emplace_back(column_.x, from, dot.x(), dot.y());
    }
    closeColumn();
    column_ = next;
}

void PainterCanvas::closeColumn() {
    if (column_.open)
        fills_.emplace_back(column_.x - lineDots_ / 2, column_.least - lineDots_ / 2, lineDots_,
                            column_.greatest - column_.least + lineDots_);
    column_.open = false;
}

void PainterCanvas::point(double x, double y, Colour colour) {
    if (colour != pendingColour_)
        flush();
    pendingColour_ = colour;
    closeColumn();
    const int side = std::max(1, qRound(drawWidth_ * dotsPerUnit_));
    const QPoint centre = toDevice(x, y);
    fills_.emplace_back(centre.x() - side / 2, centre.y() - side / 2, side, side);
    currentX_ = x;
    currentY_ = y;
}

void PainterCanvas::flush() {
    closeColumn();
    if (fills_.empty() && slopes_.empty())
        return;
    if (QPainter* p = painter()) {
        const QColor colour = toQColor(pendingColour_);
        p->setPen(QPen(colour, lineDots_ == 1 ? 0 : lineDots_));
        p->drawLines(slopes_.data(), static_cast<int>(slopes_.size()));
        p->setPen(Qt::NoPen);
        p->setBrush(colour);
        p->drawRects(fills_.data(), static_cast<int>(fills_.size()));
    }
    forgetPending();
}

void PainterCanvas::forgetPending() {
    column_.open = false;
    fills_.clear();
    slopes_.clear();
}

void PainterCanvas::print(std::string_view text) {
    flush();
    if (QPainter* p = painter(); p != nullptr && !text.empty()) {
        p->setPen(toQColor(foreColour_));
        const QPoint corner = toDevice(currentX_, currentY_);
        p->drawText(QPointF(corner.x(), corner.y() + QFontMetricsF(font_).ascent()),
                    toWindow(text));
    }
    currentX_ = scale_.left;
    currentY_ -= (scale_.top > scale_.bottom ? 1.0 : -1.0) * textHeight();
}

double PainterCanvas::textHeight() const {
    const double dots = QFontMetricsF(font_).height();
    return factorY_ == 0.0 ? 0.0 : std::abs(dots / factorY_);
}

double PainterCanvas::textWidth(std::string_view text) const {
    const double dots = QFontMetricsF(font_).horizontalAdvance(toWindow(text));
    return factorX_ == 0.0 ? 0.0 : std::abs(dots / factorX_);
}

}  // namespace kestrel
