#include "analysis/results_printout.h"

#include <span>

#include "analysis/result_list.h"
#include "base/page_text.h"

namespace kestrel {
namespace {

// Column headings and the rule under them, at the end of the header.
constexpr std::size_t headingLines = 2;

}  // namespace

void printResults(const Spectrum& spectrum, const std::vector<std::string>& lines,
                  const std::string& printoutDate, PrintJob& job) {
    PageText page(job.canvas(), job.layout());
    const std::vector<std::string> header = resultHeader(spectrum);
    page.printZones({"Kestrel   PKarea cal", "Printout Date: " + printoutDate});
    page.print("");
    for (const std::string& line : header) {
        for (const std::string& piece : page.broken(line))
            page.print(piece);
    }
    const auto body = [&](const std::string& line) {
        if (!page.hasRoom()) {
            job.newPage();
            page.startPage();
            for (const std::string& heading : std::span(header).last(headingLines))
                page.print(heading);
        }
        page.print(line);
    };
    for (const std::string& line : lines)
        body(line);
    body(resultFooter());
}

}  // namespace kestrel
