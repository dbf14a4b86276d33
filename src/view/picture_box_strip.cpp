#include "view/picture_box_strip.h"

#include <utility>

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include "ui/fonts.h"
#include "view/picture_box.h"

namespace kestrel {

PictureStrip::PictureStrip(QWidget* parent, Drawing drawing)
    : QWidget(parent),
      drawing_(std::move(drawing)),
      canvas_(fixedPitchFont(PlotLook{}.textPoints())) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setTextPoints(PlotLook{}.textPoints());
}

void PictureStrip::setTextPoints(double points) {
    canvas_.setFontPoints(points);
    setFixedHeight(QFontMetrics(fixedPitchFont(points)).height() * 3 / 2);
    update();
}

void PictureStrip::paintEvent(QPaintEvent*) {
    const double ratio = devicePixelRatioF();
    QImage picture(dotsOf(*this), QImage::Format_RGB32);
    canvas_.attach(&picture, picture.size(), ratio, lineDotsAt(ratio));
    drawing_(canvas_);
    canvas_.finish();
    canvas_.attach(nullptr, picture.size(), ratio);
    QPainter painter(this);
    painter.scale(1.0 / ratio, 1.0 / ratio);
    painter.drawImage(QPointF(0, 0), picture);
}

}  // namespace kestrel
