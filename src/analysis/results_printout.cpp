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
    const std::string footer = resultFooter();
    PageText page(job.canvas(), job.layout(), static_cast<int>(footer.size()));
    const std::vector<std::string> header = resultHeader(spectrum);
    const auto print = [&](const std::string& line, bool inBody) {
        for (const std::string& piece : page.broken(line)) {
            if (!page.hasRoom()) {
                job.newPage();
                page.startPage();
                for (const std::string& heading : std::span(header).last(inBody ? headingLines : 0))
                    page.print(heading);
            }
            page.print(piece);
        }
    };
    page.printZones({"Kestrel   PKarea cal", "Printout Date: " + printoutDate});
    print("", false);
    for (const std::string& line : header)
        print(line, false);
    for (const std::string& line : lines)
        print(line, true);
    print(footer, true);
}

}  // namespace kestrel
