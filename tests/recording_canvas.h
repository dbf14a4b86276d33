// A canvas that keeps every call, for tests of drawing code.
#pragma once

#include <algorithm>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/canvas.h"

namespace kestrel::test {

struct Line {
    double x1, y1, x2, y2;
    Colour colour;
    friend bool operator==(const Line&, const Line&) = default;
};
struct Point {
    double x, y;
    Colour colour;
    friend bool operator==(const Point&, const Point&) = default;
};
struct Text {
    double x, y;
    std::string text;
    Colour colour;
};

class RecordingCanvas : public Canvas {
  public:
    void setScale(const UserScale& s) override { scale_ = s; }
    UserScale scale() const override { return scale_; }
    void clear(Colour) override {
        lines.clear();
        points.clear();
        texts.clear();
        clips.clear();
    }
    void setForeColour(Colour colour) override { foreColour_ = colour; }
    Colour foreColour() const override { return foreColour_; }
    void clipTo(const UserScale& part) override { clips.push_back(part); }
    void setDrawWidth(int width) override { drawWidth = width; }
    void moveTo(double x, double y) override { x_ = x, y_ = y; }
    void lineTo(double x, double y, Colour colour) override {
        lines.push_back({x_, y_, x, y, colour});
        moveTo(x, y);
    }
    void point(double x, double y, Colour colour) override {
        points.push_back({x, y, colour});
        moveTo(x, y);
    }
    void print(std::string_view text) override {
        texts.push_back({x_, y_, std::string(text), foreColour_});
    }
    double textHeight() const override { return lineHeight; }
    double textWidth(std::string_view text) const override {
        return characterWidth * (scale_.right - scale_.left) * static_cast<double>(text.size());
    }

    bool has(const Line& line) const { return std::ranges::count(lines, line) > 0; }
    std::optional<Text> textBeginning(std::string_view start) const {
        const auto it =
            std::ranges::find_if(texts, [&](const Text& t) { return t.text.starts_with(start); });
        return it == texts.end() ? std::nullopt : std::optional(*it);
    }

    // All of it, an item a line, to compare a whole drawing with a recorded one.
    std::string drawing() const {
        std::ostringstream all;
        all << std::hex;
        for (const Line& l : lines)
            all << "line " << l.x1 << ' ' << l.y1 << ' ' << l.x2 << ' ' << l.y2 << ' ' << l.colour
                << '\n';
        for (const Point& p : points)
            all << "point " << p.x << ' ' << p.y << ' ' << p.colour << '\n';
        for (const Text& t : texts)
            all << "text " << t.x << ' ' << t.y << ' ' << t.colour << " \"" << t.text << "\"\n";
        return all.str();
    }

    std::vector<Line> lines;
    std::vector<Point> points;
    std::vector<Text> texts;
    int drawWidth = 0;
    double lineHeight = 30;
    double characterWidth = 0.01;  // as a part of the scale
    std::vector<UserScale> clips;

  private:
    UserScale scale_;
    Colour foreColour_ = 0x123456;
    double x_ = 0;
    double y_ = 0;
};

}  // namespace kestrel::test
