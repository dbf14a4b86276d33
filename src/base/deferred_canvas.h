// A canvas that keeps what is drawn on it for another one to draw later.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/canvas.h"

namespace kestrel {

class DeferredCanvas : public Canvas {
  public:
    // Scale, colours and text sizes are those of `model`, which must outlive this canvas.
    explicit DeferredCanvas(Canvas& model) : model_(model) {}

    // Draws everything kept, in the order it came.
    void replay(Canvas& canvas) const {
        for (const auto& call : calls_)
            call(canvas);
    }

    void setScale(const UserScale& scale) override {
        both([scale](Canvas& c) { c.setScale(scale); });
    }
    UserScale scale() const override { return model_.scale(); }
    void clear(Colour background) override {
        both([background](Canvas& c) { c.clear(background); });
    }
    void setForeColour(Colour colour) override {
        both([colour](Canvas& c) { c.setForeColour(colour); });
    }
    Colour foreColour() const override { return model_.foreColour(); }
    void clipTo(const UserScale& part) override {
        then([part](Canvas& c) { c.clipTo(part); });
    }
    void setDrawWidth(int width) override {
        then([width](Canvas& c) { c.setDrawWidth(width); });
    }
    void moveTo(double x, double y) override {
        then([x, y](Canvas& c) { c.moveTo(x, y); });
    }
    void lineTo(double x, double y, Colour colour) override {
        then([x, y, colour](Canvas& c) { c.lineTo(x, y, colour); });
    }
    void point(double x, double y, Colour colour) override {
        then([x, y, colour](Canvas& c) { c.point(x, y, colour); });
    }
    void print(std::string_view text) override {
        then([text = std::string(text)](Canvas& c) { c.print(text); });
    }
    double textHeight() const override { return model_.textHeight(); }
    double textWidth(std::string_view text) const override { return model_.textWidth(text); }

    void newPage() override {
        then([](Canvas& c) { c.newPage(); });
    }

  private:
    void then(std::function<void(Canvas&)> call) { calls_.push_back(std::move(call)); }
    void both(const std::function<void(Canvas&)>& call) {
        call(model_);
        then(call);
    }

    Canvas& model_;
    std::vector<std::function<void(Canvas&)>> calls_;
};

}  // namespace kestrel
