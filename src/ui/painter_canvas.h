// A canvas on any Qt paint device: the picture of a window, or a page.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include <QFont>
#include <QLine>
#include <QPainter>
#include <QPoint>
#include <QRect>
#include <QSize>

#include "base/canvas.h"

namespace kestrel {

// Points (1/72 inch) in a canvas unit (1/96 inch).
inline constexpr double pointsPerUnit = 72.0 / 96.0;

class PainterCanvas : public Canvas {
  public:
    // The font's size is in points.
    explicit PainterCanvas(const QFont& font) : font_(font), fontPoints_(font.pointSizeF()) {}

    // Draws on `device` (not owned) from now on; `dots` is its size, `dotsPerUnit` the device dots
    // in a screen pixel at 96 dots per inch, `lineDots` the width of lines. Scale and fore colour
    // stay. Without a device nothing is drawn.
    void attach(QPaintDevice* device, QSize dots, double dotsPerUnit, int lineDots = 1);

    // Takes effect with the next device.
    void setFontPoints(double points) { fontPoints_ = points; }

    // Of its texts, in dots of the device.
    const QFont& font() const { return font_; }

    // A part of the device, in dots, takes the place of the whole.
    void goOnIn(const QRect& part);

    // Begins to draw, which the first call of a drawing function does as well. False where the
    // device cannot be drawn on.
    bool begin();
    // Puts everything drawn so far on the device.
    void flush();
    // The same, and lets go of the device, which may then be read.
    void finish();

    void setScale(const UserScale& scale) override;
    UserScale scale() const override { return scale_; }
    void clear(Colour background) override;
    void setForeColour(Colour colour) override { foreColour_ = colour; }
    Colour foreColour() const override { return foreColour_; }
    void clipTo(const UserScale& part) override;
    void setDrawWidth(int width) override { drawWidth_ = width; }
    void moveTo(double x, double y) override;
    void lineTo(double x, double y, Colour colour) override;
    void point(double x, double y, Colour colour) override;
    void print(std::string_view text) override;
    double textHeight() const override;
    double textWidth(std::string_view text) const override;

    // Device dots of user coordinates, and back.
    QPoint toDevice(double x, double y) const;
    double userX(double dots) const;
    double userY(double dots) const;

  private:
    QPainter* painter();
    void updateFactors();
    QPoint onCanvas(QPoint dot) const;
    void goTo(QPoint dot);
    void leaveColumn(QPoint dot);
    void closeColumn();
    void forgetPending();

    QPaintDevice* device_ = nullptr;
    QSize dots_;
    QPoint origin_;
    double dotsPerUnit_ = 1.0;
    int lineDots_ = 1;
    std::unique_ptr<QPainter> painter_;
    QFont font_;
    double fontPoints_;

    UserScale scale_{0, 0, 1, 1};
    double factorX_ = 0;  // dots per user unit
    double factorY_ = 0;
    Colour foreColour_ = 0xFFFFFF;
    int drawWidth_ = 1;
    double currentX_ = 0;
    double currentY_ = 0;

    // Lines and points of one colour wait here and are drawn in one call each. Nearly all of a
    // curve is vertical or horizontal, and filling a rectangle costs a fraction of stroking a line.
    std::vector<QRect> fills_;
    std::vector<QLine> slopes_;
    // The end of the line that is still in one column of dots: however often it goes up and down
    // there, the column is filled once.
    struct Column {
        bool open = false;
        int x = 0;
        int least = 0;
        int greatest = 0;
        int last = 0;
    };
    Column column_;
    Colour pendingColour_ = 0;
};

}  // namespace kestrel
