// ResidualPlot: how far the points of a calibration lie from its curve, against the channel.
#pragma once

#include <optional>
#include <vector>

#include <QWidget>

namespace kestrel {

struct ResidualPoint {
    double channel = 0;
    double residual = 0;  // keV
    double error = 0;     // one standard deviation, keV
    bool isUsed = true;
    bool isCurrent = false;
};

class ResidualPlot : public QWidget {
    Q_OBJECT

  public:
    explicit ResidualPlot(QWidget* parent);

    // None leave the plot empty.
    void setPoints(std::vector<ResidualPoint> points, int channelCount);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF area() const;
    QPointF placeOf(double channel, double residual) const;
    void drawAxes(QPainter& painter) const;
    void drawPoint(QPainter& painter, const ResidualPoint& point) const;

    std::vector<ResidualPoint> points_;
    int channelCount_ = 1;
    double limit_ = 1;  // keV, at the upper and the lower edge
};

}  // namespace kestrel
