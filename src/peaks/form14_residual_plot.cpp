#include "peaks/form14_residual_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QPainter>

namespace kestrel {
namespace {

constexpr double radius = 4;  // pixels

// 1, 2 or 5 times a power of ten: the least that is no less.
double roundLimit(double value) {
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (value <= step * power)
            return step * power;
    }
    return 10 * power;
}

// Points that are switched off may lie outside.
double limitOf(const std::vector<ResidualPoint>& points) {
    constexpr double least = 0.01;  // keV
    double largest = least;
    for (const ResidualPoint& point : points) {
        if (point.isUsed)
            largest = std::max(largest, std::abs(point.residual));
    }
    return roundLimit(largest * 1.1);
}

}  // namespace

ResidualPlot::ResidualPlot(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("residuals"));
    setAccessibleName(tr("Residuals of the peaks"));
    setToolTip(
        tr("Energy given less energy of the curve, keV, against the channel; hollow where "
           "the peak is not used"));
    setMinimumHeight(110);
}

void ResidualPlot::setPoints(std::vector<ResidualPoint> points, int channelCount) {
    points_ = std::move(points);
    channelCount_ = std::max(channelCount, 1);
    limit_ = limitOf(points_);
    update();
}

QRectF ResidualPlot::area() const {
    const double left = fontMetrics().horizontalAdvance(QStringLiteral("-0.000 keV")) + 8;
    const double below = fontMetrics().height() + 2;
    return QRectF(rect()).adjusted(left, 6, -12, -below);
}

QPointF ResidualPlot::placeOf(double channel, double residual) const {
    const QRectF inside = area();
    const double up = std::clamp(residual / limit_, -1.0, 1.0);
    return {inside.left() + channel / channelCount_ * inside.width(),
            inside.center().y() - up * inside.height() / 2};
}

void ResidualPlot::drawAxes(QPainter& painter) const {
    const QRectF inside = area();
    const double text = fontMetrics().height();
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(inside);
    painter.setPen(palette().color(QPalette::Text));
    for (const int side : {-1, 0, 1}) {
        const QPointF start = placeOf(0, side * limit_);
        const QRectF label(0, start.y() - text / 2, start.x() - 4, text);
        painter.drawText(label, Qt::AlignRight | Qt::AlignVCenter,
                         side == 0 ? QStringLiteral("0 keV") : QString::number(side * limit_));
    }
    painter.drawLine(placeOf(0, 0), placeOf(channelCount_, 0));
    const QRectF below(inside.left(), inside.bottom() + 1, inside.width(), text);
    painter.drawText(below, Qt::AlignLeft, QStringLiteral("0"));
    painter.drawText(below, Qt::AlignHCenter, tr("channel"));
    painter.drawText(below, Qt::AlignRight, QString::number(channelCount_));
}

void ResidualPlot::drawPoint(QPainter& painter, const ResidualPoint& point) const {
    const QColor colour = palette().color(point.isCurrent ? QPalette::Highlight : QPalette::Text);
    painter.setPen(QPen(colour, point.isCurrent ? 2 : 1));
    painter.drawLine(placeOf(point.channel, point.residual - point.error),
                     placeOf(point.channel, point.residual + point.error));
    painter.setBrush(point.isUsed ? colour : palette().color(QPalette::Base));
    painter.drawEllipse(placeOf(point.channel, point.residual), radius, radius);
}

void ResidualPlot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    if (points_.empty())
        return;
    drawAxes(painter);
    for (const ResidualPoint& point : points_)
        drawPoint(painter, point);
}

}  // namespace kestrel
