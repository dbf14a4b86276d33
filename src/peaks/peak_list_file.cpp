#include "peaks/peak_list_file.h"

#include <string_view>

#include "base/file_replacement.h"
#include "base/input_file.h"
#include "base/text.h"
#include "spectrum/file_name.h"

namespace kestrel {
namespace {

constexpr std::string_view lineEnd = "\r\n";

template <typename Field>
std::string lineOf(const std::vector<PeakColumn>& columns, Field field) {
    std::string line;
    for (const PeakColumn& column : columns)
        line.append(line.empty() ? "" : ",").append(csvField(field(column)));
    return line.append(lineEnd);
}

}  // namespace

std::string peakListText(const PeakList& list) {
    std::vector<PeakColumn> columns = peakColumns(list.compared);
    std::erase_if(columns, [](const PeakColumn& column) { return column.fileHeading.empty(); });
    std::string text = lineOf(columns, [](const PeakColumn& column) { return column.fileHeading; });
    for (const ListedPeak& peak : list.peaks)
        text += lineOf(columns, [&](const PeakColumn& column) { return column.text(peak); });
    return text;
}

void savePeakList(const PeakList& list, const Spectrum& spectrum, std::string& lastDirectory,
                  Dialogs& dialogs) {
    const FileChoice choice = dialogs.saveFile({.title = "Save the Peaks",
                                                .filters = {{"csv file(s)", "*.csv"}},
                                                .folder = lastDirectory,
                                                .fileName = baseName(spectrum) + "-peaks.csv"});
    lastDirectory = currentDirectory();
    if (!choice.path.empty())
        replaceFile(choice.path, peakListText(list));
}

}  // namespace kestrel
