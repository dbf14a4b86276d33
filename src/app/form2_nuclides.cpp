// The nuclide windows of the main window, the marks of a nuclide's lines, and where the database
// lies.

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <QMenu>

#include "app/form2_main_window.h"
#include "app/nuclide_location.h"
#include "base/directory_choice.h"
#include "base/number_text.h"
#include "base/text.h"
#include "nuclide/nuclide_key.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int energyListPlacement = 9;
constexpr int nuclideDataPlacement = 12;

void bringToFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

// "Cs-137g" as people write it: "Cs-137".
std::string nameOf(const std::string& key) {
    std::string name = key;
    std::erase(name, ' ');
    if (name.ends_with('g'))
        name.pop_back();
    return name;
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

// As the table of the nuclide window shows it.
MarkedNuclide Form2::shownNuclide() const {
    MarkedNuclide nuclide{nameOf(module_.nuclide.lastShown), {}};
    for (const NuclideRow& row : module_.nuclide.rows) {
        const LineKind kind = kindOf(row);
        nuclide.lines.push_back({parseLeadingNumber(row.energy),
                                 parseLeadingNumber(trimBlanks(row.intensity)),
                                 kind == LineKind::Gamma || kind == LineKind::XRay});
    }
    return nuclide;
}

// Those that the user has chosen take the place of the one in the nuclide data window.
void Form2::buildMarks() {
    const bool photonsOnly = module_.preferences.photonsOnly;
    const std::vector<MarkedNuclide>& chosen = module_.markedNuclides;
    if (!module_.nuclRoiOn)
        module_.marks = {};
    else if (chosen.empty())
        module_.marks =
            marksOfOne(shownNuclide(), photonsOnly, module_.spectrum, module_.plotPalette);
    else
        module_.marks = marksOfSeveral(chosen, photonsOnly, module_.spectrum, module_.plotPalette);
    colourChannels(module_.channelColour, module_.marks);
}

void Form2::showNuclideMarks() {
    buildMarks();
    view_.redraw();
}

std::vector<PlacedText> Form2::markTextsOn(const Canvas& canvas) const {
    return markTexts(module_.marks, module_.preferences.markLabels, module_.view, canvas);
}

void Form2::switchMarkedNuclide() {
    std::vector<MarkedNuclide>& chosen = module_.markedNuclides;
    MarkedNuclide nuclide = shownNuclide();
    const auto there = std::ranges::find(chosen, nuclide.name, &MarkedNuclide::name);
    if (there != chosen.end())
        return removeMarked(static_cast<std::size_t>(there - chosen.begin()));
    const auto hasEnergy = [](const MarkedLine& line) { return line.energy > 0; };
    if (std::ranges::none_of(nuclide.lines, hasEnergy))
        return;
    if (chosen.size() == mostMarkedNuclides) {
        dialogs_.message({.text = "Five nuclides are marked already.\nUnmark one of them first.",
                          .title = "Marked nuclides",
                          .icon = Icon::Exclamation});
        return;
    }
    chosen.push_back(std::move(nuclide));
    showNuclideMarks();
}

void Form2::removeMarked(std::size_t number) {
    module_.markedNuclides.erase(module_.markedNuclides.begin() +
                                 static_cast<std::ptrdiff_t>(number));
    showNuclideMarks();
}

void Form2::listMarkedNuclides() {
    QMenu& menu = *actionNamed("markedNuclides")->menu();
    menu.clear();
    for (std::size_t i = 0; i < module_.markedNuclides.size(); ++i)
        menu.addAction(
            QStringLiteral("Unmark &%1 %2").arg(i + 1).arg(toSigns(module_.markedNuclides[i].name)),
            this, [this, i] { removeMarked(i); });
    if (menu.isEmpty())
        menu.addAction(QStringLiteral("(none: mark them in the nuclide data window)"))
            ->setEnabled(false);
}

}  // namespace kestrel
