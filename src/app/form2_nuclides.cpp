// The nuclide windows of the main window, the marks of a nuclide's lines, and where the database
// lies.

#include <vector>

#include "app/form2_main_window.h"
#include "app/nuclide_location.h"
#include "base/directory_choice.h"
#include "base/number_text.h"
#include "base/text.h"
#include "nuclide/nuclide_key.h"

namespace kestrel {
namespace {

constexpr int energyListPlacement = 9;
constexpr int nuclideDataPlacement = 12;

void bringToFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

// The lines as the table of the nuclide window shows them.
std::vector<MarkedLine> markedLines(const NuclideData& data) {
    std::vector<MarkedLine> lines;
    for (const NuclideRow& row : data.rows)
        lines.push_back(
            {parseLeadingNumber(row.energy), parseLeadingNumber(trimBlanks(row.intensity))});
    return lines;
}

}  // namespace

void Form2::showMainWindow() {
    bringToFront(*this);
}

void Form2::showEnergyList() {
    if (!form9_)
        form9_ =
            new Form9({module_.view.cursorCh, module_.spectrum.calCurrent,
                       module_.settings.marigoldDir, module_.palette,
                       module_.settings.windowPlacement[energyListPlacement], module_.database,
                       dialogs_, *this, [this](const std::string& key) { selectNuclide(key); }},
                      this);
    bringToFront(*form9_);
}

void Form2::showNuclideData() {
    if (!form12_)
        form12_ =
            new Form12({module_.nuclide, module_.selectedNuclide, module_.settings.marigoldDir,
                        module_.palette, module_.settings.windowPlacement[nuclideDataPlacement],
                        module_.database, dialogs_, *this},
                       this);
    bringToFront(*form12_);
    // Not every desktop activates a window that asks for it.
    form12_->ShowNuclideFromDatabase();
}

void Form2::selectNuclide(const std::string& key) {
    module_.selectedNuclide = key;
    module_.nuclide.forgetFailure();
}

void Form2::askNuclide() {
    const std::optional<std::string> key = askNuclideKey(keyFromPlotName, dialogs_);
    if (!key)
        return;
    selectNuclide(*key);
    showNuclideData();
}

// Another folder counts from the next use of the database on.
void Form2::chooseDatabaseDir() {
    const std::string before = module_.settings.marigoldDir;
    kestrel::chooseDirectory(module_.settings.marigoldDir, [this] {
        chooseDirectory("Option NuclDB Dir", "Full Path of nuc2k.mdb", this);
    });
    if (module_.settings.marigoldDir != before)
        module_.database.close();
}

void Form2::switchNuclideMarks() {
    module_.nuclRoiOn = !module_.nuclRoiOn;
    buildMarks();
    view_.recentre();
}

void Form2::buildMarks() {
    buildNuclideMarks(module_.channelColour, module_.nuclRoiOn, markedLines(module_.nuclide),
                      module_.spectrum, module_.plotPalette);
}

}  // namespace kestrel
