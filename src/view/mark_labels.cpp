#include "view/mark_labels.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "view/axes.h"

namespace kestrel {
namespace {

constexpr double lowestHeader = 1000;  // where the last of the header texts begins
constexpr double rowDistance = 1.1;    // in heights of a text
constexpr double gapPart = 0.008;      // between texts, as a part of the width
constexpr std::size_t rowCount = 5;

class TextRows {
  public:
    TextRows(const ViewState& view, const Canvas& canvas)
        : canvas_(canvas), left_(view.viewStartCh), gap_(gapPart * view.viewWidth) {}

    // From `x` on in the first row.
    double addToLegend(double x, const NuclideMarks::Entry& entry) {
        place(0, std::max(x, left_ + gap_), entry.name, entry.colour);
        return texts_.back().x + canvas_.textWidth(entry.name) + 2 * gap_;
    }

    // Centred on the mark as far as the edges leave room, in the first row that has room.
    void addLabel(const LineMark& mark) {
        const double width = canvas_.textWidth(mark.label);
        const double rightmost = canvas_.scale().right - width;
        if (rightmost < left_)
            return;
        const double x = std::clamp(mark.channel - width / 2, left_, rightmost);
        for (std::size_t row = 0; row < rowCount; ++row) {
            if (isFree(row, x, x + width))
                return place(row, x, mark.label, mark.colour);
        }
    }

    std::vector<PlacedText> texts() && { return std::move(texts_); }

  private:
    struct Span {
        double left;
        double right;
    };

    bool isFree(std::size_t row, double left, double right) const {
        return std::ranges::none_of(taken_.at(row), [&](const Span& other) {
            return left < other.right + gap_ && other.left < right + gap_;
        });
    }

    void place(std::size_t row, double x, const std::string& text, Colour colour) {
        const double down = (static_cast<double>(row) + 1) * rowDistance * canvas_.textHeight();
        taken_.at(row).push_back({x, x + canvas_.textWidth(text)});
        texts_.push_back({x, lowestHeader - down, text, colour});
    }

    const Canvas& canvas_;
    double left_;
    double gap_;
    std::array<std::vector<Span>, rowCount> taken_;
    std::vector<PlacedText> texts_;
};

// The marks in the shown range that have a colour, the strongest first.
std::vector<const LineMark*> shownMarks(const NuclideMarks& marks, const ViewState& view) {
    std::vector<const LineMark*> shown;
    for (const LineMark& mark : marks.lines) {
        if (mark.colour != 0 && mark.channel >= view.viewStartCh && mark.channel <= view.viewEndCh)
            shown.push_back(&mark);
    }
    std::ranges::stable_sort(shown, std::greater(), &LineMark::intensity);
    return shown;
}

}  // namespace

std::vector<PlacedText> markTexts(const NuclideMarks& marks, bool labels, const ViewState& view,
                                  const Canvas& canvas) {
    TextRows rows(view, canvas);
    double x = view.viewStartCh;
    for (const NuclideMarks::Entry& entry : marks.legend)
        x = rows.addToLegend(x, entry);
    if (labels) {
        for (const LineMark* mark : shownMarks(marks, view))
            rows.addLabel(*mark);
    }
    return std::move(rows).texts();
}

void drawMarkTexts(const std::vector<PlacedText>& texts, Colour ground, Canvas& canvas) {
    for (const PlacedText& placed : texts) {
        canvas.clipTo({.left = placed.x,
                       .top = placed.y,
                       .right = placed.x + canvas.textWidth(placed.text),
                       .bottom = placed.y - canvas.textHeight()});
        canvas.clear(ground);
        canvas.clipTo(canvas.scale());
        canvas.setForeColour(placed.colour);
        printAt(canvas, placed.x, placed.y, placed.text);
    }
}

}  // namespace kestrel
