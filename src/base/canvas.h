// The drawing surface that window, print preview and printer share: a user scale, lines, points,
// and text at the current position.
#pragma once

#include <cstdint>
#include <string_view>

namespace kestrel {

// A colour as 0x00BBGGRR.
using Colour = std::int32_t;

// User coordinates of the surface's edges. y usually grows upwards (top > bottom).
struct UserScale {
    double left = 0;
    double top = 0;
    double right = 1;
    double bottom = 1;
    friend bool operator==(const UserScale&, const UserScale&) = default;
};

class Canvas {
  public:
    virtual ~Canvas() = default;

    virtual void setScale(const UserScale& scale) = 0;
    virtual UserScale scale() const = 0;

    // Empties the surface to one colour and puts the current point at the top left.
    virtual void clear(Colour background) = 0;

    virtual void setForeColour(Colour colour) = 0;
    virtual Colour foreColour() const = 0;

    // What lies outside this part of the surface, in user coordinates, is cut off until the next
    // call; the scale's own extent cuts nothing off.
    virtual void clipTo(const UserScale& part) = 0;

    // Size of points, in units of one screen pixel at 96 dots per inch. Lines stay as thin as the
    // surface draws them, however large points are.
    virtual void setDrawWidth(int width) = 0;

    virtual void moveTo(double x, double y) = 0;
    // From the current point to (x, y), which becomes the current point.
    virtual void lineTo(double x, double y, Colour colour) = 0;
    // A point of the drawing width; (x, y) becomes the current point.
    virtual void point(double x, double y, Colour colour) = 0;

    // Text in the fore colour, its upper left corner at the current point; the current point then
    // goes to the start of the next line, at the left edge of the surface.
    virtual void print(std::string_view text) = 0;
    // Height of a text line, in user units (positive).
    virtual double textHeight() const = 0;
    virtual double textWidth(std::string_view text) const = 0;

    // What follows is drawn on a new page. A surface that has no pages stays as it is.
    virtual void newPage() {}

    void line(double x1, double y1, double x2, double y2, Colour colour) {
        moveTo(x1, y1);
        lineTo(x2, y2, colour);
    }
};

}  // namespace kestrel
