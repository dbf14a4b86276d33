#include "spectrum/export_as.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "base/file_replacement.h"
#include "base/input_file.h"
#include "base/runtime_fault.h"
#include "base/text.h"
#include "spectrum/file_name.h"
#include "spectrum/formats/export_formats.h"

namespace kestrel {
namespace {

constexpr const char* title = "Export As";

FileDialog exportDialog(const Spectrum& spectrum, const std::string& folder, int format) {
    FileDialog dialog{.title = title,
                      .filters = {},
                      .filterIndex = format,
                      .folder = folder,
                      .fileName = baseName(spectrum)};
    for (const ExportFormat& offered : exportFormats())
        dialog.filters.push_back({offered.name, "*" + std::string(offered.ending)});
    return dialog;
}

struct Target {
    const ExportFormat& format;
    std::string path;
};

// The user has not been asked about a file of a name that was completed here.
bool mayReplace(const std::string& path, Dialogs& dialogs) {
    return !fileExists(path) || dialogs.message({.text = "The file exists. Replace it?",
                                                 .title = title,
                                                 .icon = Icon::Question,
                                                 .buttons = Buttons::OkCancel,
                                                 .details = path});
}

Target targetOf(const FileChoice& choice) {
    const std::span<const ExportFormat> formats = exportFormats();
    const auto named = std::ranges::find_if(formats, [&](const ExportFormat& format) {
        return equalIgnoringCase(lastCharacters(choice.path, format.ending.size()), format.ending);
    });
    if (named != formats.end())
        return {*named, choice.path};
    const auto entry =
        std::clamp<std::size_t>(static_cast<std::size_t>(choice.filterIndex), 1, formats.size());
    const ExportFormat& format = formats[entry - 1];
    return {format, choice.path + std::string(format.ending)};
}

bool acceptsLosses(const Spectrum& spectrum, const ExportFormat& format, Dialogs& dialogs) {
    std::string sentences;
    for (const std::string& sentence : whatIsLost(spectrum, format))
        sentences.append(sentences.empty() ? "" : "\n").append(sentence);
    return sentences.empty() ||
           dialogs.message({.text = "The file will not hold all of the spectrum. Write it?",
                            .title = title,
                            .icon = Icon::Question,
                            .buttons = Buttons::OkCancel,
                            .details = sentences});
}

void write(const Spectrum& spectrum, const Target& target, Dialogs& dialogs) {
    try {
        replaceFile(target.path, target.format.write(spectrum));
    } catch (const RuntimeFault& fault) {
        dialogs.message({.text = "The file could not be written: " + std::string(fault.text()),
                         .title = title,
                         .icon = Icon::Exclamation,
                         .details = target.path});
    }
}

}  // namespace

void exportAs(const Spectrum& spectrum, std::string& lastDirectory, int& lastFormat,
              Dialogs& dialogs) {
    if (spectrum.filePath.empty() || spectrum.channelCount < 1) {
        dialogs.message({.text = "There is no spectrum to export.", .title = title});
        return;
    }
    const FileChoice choice = dialogs.saveFile(exportDialog(spectrum, lastDirectory, lastFormat));
    lastDirectory = currentDirectory();
    lastFormat = choice.filterIndex;
    if (choice.path.empty())
        return;
    const Target target = targetOf(choice);
    const bool completed = target.path != choice.path;
    if ((!completed || mayReplace(target.path, dialogs)) &&
        acceptsLosses(spectrum, target.format, dialogs))
        write(spectrum, target, dialogs);
}

}  // namespace kestrel
