// Lines of text on a printed page, in the columns and print zones of a line printer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/canvas.h"
#include "base/page_layout.h"

namespace kestrel {

// Puts the canvas on a scale of characters: 12 columns and 6 lines an inch, from the upper left
// corner. Text is black and begins in column 10; how far it goes depends on the font.
class PageText {
  public:
    // Where lines of `widest` characters would not fit on the page, all begin further left.
    PageText(Canvas& canvas, const PageLayout& layout, int widest = 0);

    // Whether so many more lines have room on the page.
    bool hasRoom(std::size_t lines = 1) const;
    void startPage() { y_ = 0; }
    // Where the next line begins, as a part of the page's height.
    double used() const { return y_ / canvas_.scale().bottom; }

    // `text` in pieces that fit between the left column and the right edge: a path too long for the
    // page is continued. Pieces end after a "/" where there is one, and never inside a UTF-8
    // character. On a page with no room for a character nothing is broken.
    std::vector<std::string> broken(std::string_view text) const;

    // One line, as it is.
    void print(std::string_view line);
    // One line of items, each at the start of a print zone of 14 characters: the next that begins
    // behind the item before. An item that does not fit there goes on a line of its own.
    void printZones(const std::vector<std::string>& items);

  private:
    std::size_t fitting(std::string_view text) const;
    void newLine() { y_ += lineHeight_; }

    Canvas& canvas_;
    double lineHeight_;
    double left_;
    double y_ = 0;
};

}  // namespace kestrel
