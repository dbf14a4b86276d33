#include "analysis/results_printout.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>

#include "analysis/result_list.h"
#include "base/number_text.h"
#include "base/page_text.h"

namespace kestrel {
namespace {

// Column headings and the rule under them, at the end of the header.
constexpr std::size_t headingLines = 2;

// The list on as many pages as it needs: each after the first begins with the file's name, its own
// number and the column headings.
class ResultPages {
  public:
    ResultPages(std::span<const std::string> header, PrintJob& job, int widest)
        : header_(header), job_(job), page_(job.canvas(), job.layout(), widest) {}

    void printTitle(const std::string& printoutDate) {
        page_.printZones({"Kestrel   PKarea cal", "Printout Date: " + printoutDate});
        page_.print("");
        for (const std::string& line : header_)
            print({&line, 1});
    }

    // Lines that stay on one page, where a page has room for them.
    void print(std::span<const std::string> lines) {
        std::vector<std::string> pieces;
        for (const std::string& line : lines)
            std::ranges::copy(page_.broken(line), std::back_inserter(pieces));
        bool fits = page_.hasRoom(pieces.size());
        for (const std::string& piece : pieces) {
            if (!fits || !page_.hasRoom())
                goOn();
            fits = true;
            page_.print(piece);
        }
    }

  private:
    void goOn() {
        job_.canvas().newPage();
        page_.startPage();
        ++number_;
        page_.printZones({header_.front(), "Page " + plainNumber(std::int64_t{number_})});
        for (const std::string& heading : header_.last(headingLines)) {
            for (const std::string& piece : page_.broken(heading))
                page_.print(piece);
        }
    }

    std::span<const std::string> header_;
    PrintJob& job_;
    PageText page_;
    int number_ = 1;
};

}  // namespace

void printResults(const Spectrum& spectrum, const std::vector<std::string>& lines,
                  const std::string& printoutDate, PrintJob& job) {
    std::vector<std::string> body = lines;
    body.push_back(resultFooter());
    const std::vector<std::string> header = resultHeader(spectrum);
    ResultPages pages(header, job, static_cast<int>(body.back().size()));
    pages.printTitle(printoutDate);
    // The closing rule never stands alone on a page.
    const std::size_t end = std::min<std::size_t>(body.size(), 2);
    for (const std::string& line : std::span(body).first(body.size() - end))
        pages.print({&line, 1});
    pages.print(std::span(body).last(end));
}

}  // namespace kestrel
