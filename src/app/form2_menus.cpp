// The menu tree of the main window, and what its items do.

#include <array>

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMenuBar>

#include "analysis/form11_results.h"
#include "analysis/form5_energy_calibration.h"
#include "app/form2_main_window.h"
#include "app/form6_directory.h"
#include "print/form8_print_preview.h"
#include "spectrum/csv_export.h"
#include "spectrum/export_as.h"
#include "ui/text_codec.h"
#include "view/jumps.h"

namespace kestrel {
namespace {

constexpr int calibrationPlacement = 5;
constexpr int directoryPlacement = 6;
constexpr int peakAreaPlacement = 7;
constexpr int printPlacement = 8;
constexpr int resultPlacement = 11;

}  // namespace

// The menus from left to right, each from top to bottom. What an item needs, its tool tip and the
// keys that people are told are made from this table.
std::span<const Form2::Action> Form2::actions() {
    using F = Form2;
    // menu, object name, caption, keys of the plot, shortcut, what it does, handler, mark, use
    static constexpr std::array table = {
        Action{"", "file", "&File"},
        Action{"file", "f11(0)", "&Open File...", "F7, G", "", "Open a spectrum of a chosen format",
               &F::openSpectrumFile},
        Action{"file", "f11(1)", "&Data Inform", "", "", "Show the header of the spectrum",
               &F::showDataInformation},
        Action{"file", "f11(4)", "&Save as CSV", "", "", "Save the counts as a table",
               &F::saveCounts},
        Action{"file", "f11(20)", "&Print", "", "", "Show the printed sheet, and print it",
               &F::showPrintPreview},
        Action{"file", "f11(30)"},
        Action{"file", "f11(40)", "E&xit", "", "Ctrl+Q", "Save the settings and leave", &F::leave},
        Action{"file", ""},
        Action{"file", "openAny", "Open &Any File...", "", "Ctrl+O",
               "Open a spectrum of any format, known by its content", &F::openAnyFile},
        Action{"file", "exportAs", "Expor&t As...", "", "Ctrl+S",
               "Save the spectrum in the format of another program", &F::exportSpectrum},
        Action{"file", "recent", "Open &Recent"},
        Action{"file", "nextFile", "&Next File", "", "Ctrl+D",
               "Open the next spectrum of the folder in the same view", &F::openNextFile},
        Action{"file", "previousFile", "P&revious File", "", "Ctrl+U",
               "Open the previous spectrum of the folder in the same view", &F::openPreviousFile},
        Action{"file", "savePicture", "Save P&icture...", "", "",
               "Save the plot as a PNG, SVG or PDF file", &F::savePicture},
        Action{"", "pkarea", "&pkArea", "", "", "Measure peak areas", &F::showPeakArea, nullptr,
               &F::canMeasure},
        Action{"", "jump", "&Jump"},
        Action{"jump", "jump_ch", "&Ch", "F1, A", "", "Move the cursor to a channel",
               &F::jumpToChannel},
        Action{"jump", "jump_engy", "&Energy", "Z", "", "Move the cursor to an energy",
               &F::jumpToEnergy},
        Action{"jump", ""},
        Action{"jump", "showAll", "Show &All", "Home", "", "Show all channels",
               &F::showAllChannels},
        Action{"jump", "zoomBack", "Zoom &Back", "F4", "",
               "Show the range before the last drag or turn of the wheel", &F::zoomBack},
        Action{"jump", "fitScale", "&Fit Scale", "End", "",
               "Fit the linear full scale to the highest peak shown", &F::fitScale},
        Action{"", "optn", "&Option"},
        Action{"optn", "o11(0)", "&Energy Calib", "I", "",
               "Calibrate channels to energies with two points", &F::calibrateEnergy},
        Action{"optn", "o11(1)", "&NuclDB Dir", "", "", "Choose the folder of the nuclide database",
               &F::chooseDatabaseDir},
        Action{"optn", "o11(2)", "&Plot Mode"},
        Action{"o11(2)", "o111(0)", "&Line", "", "", "Draw the spectrum as a line", &F::drawLine,
               &F::drawsLine},
        Action{"o11(2)", "o111(1)", "&Dots", "", "", "Draw the spectrum as dots", &F::drawDots,
               &F::drawsDots},
        Action{"optn", "o11(3)", "Nucl&ROI(ON/OFF)", "B", "",
               "Show or hide the marks of a nuclide's lines", &F::switchNuclideMarks},
        Action{"optn", ""},
        Action{"optn", "markLabels", "&Mark Labels", "", "",
               "Show or hide nuclide and energy above each mark",
               &F::switchMarkChoice<&Preferences::markLabels>,
               &F::marksBy<&Preferences::markLabels>},
        Action{"optn", "photonsOnly", "G&amma and X-Rays Only", "", "",
               "Mark no electron and beta lines", &F::switchMarkChoice<&Preferences::photonsOnly>,
               &F::marksBy<&Preferences::photonsOnly>},
        Action{"optn", "markedNuclides", "Marked N&uclides"},
        Action{"optn", "energyAxis", "Energy A&xis", "", "",
               "Show or hide the strip of energies below the plot", &F::switchEnergyAxis,
               &F::showsEnergyAxis},
        Action{"optn", "fineTicks", "&Fine Ticks", "", "",
               "Show or hide minor ticks, and labels at all ticks",
               &F::switchLook<&PlotLook::fineTicks>, &F::looks<&PlotLook::fineTicks>},
        Action{"optn", "largeTexts", "&Large Texts", "", "", "Larger or usual texts in the plot",
               &F::switchLook<&PlotLook::largeTexts>, &F::looks<&PlotLook::largeTexts>},
        Action{"optn", "colours", "&Colours"},
        Action{"colours", "blackColours", "&Black", "", "", "Light colours on black",
               &F::useColours<ColourScheme::Black>, &F::usesColours<ColourScheme::Black>},
        Action{"colours", "lightColours", "&Light", "", "", "Dark colours on white",
               &F::useColours<ColourScheme::Light>, &F::usesColours<ColourScheme::Light>},
        Action{"colours", "safeColours", "&Safe", "", "",
               "Colours on black that the colour-blind tell apart",
               &F::useColours<ColourScheme::Safe>, &F::usesColours<ColourScheme::Safe>},
        Action{"optn", ""},
        Action{"optn", "peakCalibration", "Calibrate from Pea&ks...", "", "",
               "Calibrate channels to energies with many peaks", &F::calibrateFromPeaks},
        Action{"optn", "lastPeakCalibration", "&Use Last Peak Calibration", "", "",
               "Calibrate as it was applied last from peaks, also in an earlier run",
               &F::useLastPeakCalibration, nullptr, &F::hasLastPeakCalibration},
        Action{"", "win", "&Window"},
        Action{"win", "win_wngy", "Open &EnergyList", "F5, E", "",
               "List the lines near the energy at the cursor", &F::showEnergyList},
        Action{"win", "win_nd", "Open &NuclData", "", "", "Show half-life and lines of a nuclide",
               &F::showNuclideData},
        Action{"win", ""},
        Action{"win", "peaks", "Open &Peaks", "", "F8",
               "List all peaks with their areas and the nuclides that could explain them",
               &F::showPeaks},
        Action{"", "compare", "&Compare"},
        Action{"compare", "openSecond", "Open &Second...", "", "",
               "Open a second spectrum of any format behind the first", &F::openSecondFile},
        Action{"compare", "swapSpectra", "S&wap", "", "F6",
               "The first and the second spectrum change places", &F::swapSpectra, nullptr,
               &F::hasSecond},
        Action{"compare", "scale", "S&cale", "", "", "", nullptr, nullptr, &F::hasSecond},
        Action{"scale", "scaleLiveTime", "&Live Time", "", "",
               "Scale the second to the live time of the first",
               &F::scaleSecond<CompareScale::LiveTime>, &F::scalesSecond<CompareScale::LiveTime>,
               &F::canScaleSecond<CompareScale::LiveTime>},
        Action{"scale", "scaleShownCounts", "&Shown Counts", "", "",
               "Scale the second to the counts of the first in the range shown",
               &F::scaleSecond<CompareScale::ShownCounts>,
               &F::scalesSecond<CompareScale::ShownCounts>,
               &F::canScaleSecond<CompareScale::ShownCounts>},
        Action{"scale", "scaleOneToOne", "&One to One", "", "", "Show the second as it is",
               &F::scaleSecond<CompareScale::OneToOne>, &F::scalesSecond<CompareScale::OneToOne>,
               &F::canScaleSecond<CompareScale::OneToOne>},
        Action{"compare", "difference", "&Difference", "", "",
               "Show the first minus the scaled second, on the linear axis", &F::switchDifference,
               &F::showsDifference, &F::hasSecond},
        Action{"compare", "removeSecond", "O&ff", "", "", "Take the second spectrum away",
               &F::removeSecond, nullptr, &F::hasSecond},
        Action{"", "help", "&Help"},
        Action{"help", "guide", "&Guide", "", "F12", "Read the user guide", &F::showGuide},
        Action{"help", "keys", "&Keys", "", "", "List the keys of the main window", &F::showKeys},
        Action{"help", "about", "&About", "", "",
               "Show version, libraries and the sources of the nuclide data", &F::showAbout},
    };
    return table;
}

// "Save the counts as a table", and the keys in brackets where there are any.
QString Form2::toolTipOf(const Action& action) {
    const QString does = QString::fromLatin1(action.does);
    const QString keys = QString::fromLatin1(action.plotKeys) + QLatin1String(action.shortcut);
    return keys.isEmpty() ? does : QStringLiteral("%1 (%2)").arg(does, keys);
}

QAction* Form2::makeMenu(QWidget& parent, const Action& action) {
    auto* menu = new QMenu(QString::fromLatin1(action.caption), &parent);
    menu->setToolTipsVisible(true);
    menu->installEventFilter(this);
    // In a menu of a menu one item has the mark.
    if (action.menu[0] != '\0')
        new QActionGroup(menu);
    return menu->menuAction();
}

// Shows the first of the plot's keys in the menu; the plot itself takes it.
void Form2::setKeysOf(QAction& item, const Action& action) {
    const QString bound = QString::fromLatin1(action.shortcut);
    const QString first = QString::fromLatin1(action.plotKeys).section(QLatin1Char(','), 0, 0);
    if (bound.isEmpty())
        item.setShortcutContext(Qt::WidgetShortcut);
    item.setShortcut(QKeySequence(bound.isEmpty() ? first : bound));
}

QAction* Form2::makeItem(QWidget& parent, const Action& action) {
    auto* item = new QAction(QString::fromLatin1(action.caption), &parent);
    setKeysOf(*item, action);
    item->setToolTip(toolTipOf(action));
    item->setCheckable(action.isOn != nullptr);
    if (auto* group = parent.findChild<QActionGroup*>({}, Qt::FindDirectChildrenOnly))
        group->addAction(item);
    connect(item, &QAction::triggered, this, [this, &action] {
        // Before it, for the case that it ends in a fault: the click itself has moved the mark.
        showMarks();
        (this->*action.run)();
        showMarks();
    });
    return item;
}

void Form2::buildMenus() {
    for (const Action& action : actions()) {
        QWidget* parent = menuBar();
        if (action.menu[0] != '\0')
            parent = actionNamed(action.menu)->menu();
        const bool separator = action.caption[0] == '\0';
        QAction* made = action.run != nullptr ? makeItem(*parent, action)
                        : separator           ? new QAction(parent)
                                              : makeMenu(*parent, action);
        made->setSeparator(separator);
        made->setObjectName(QString::fromLatin1(action.name));
        parent->addAction(made);
    }
    connect(actionNamed("recent")->menu(), &QMenu::aboutToShow, this, &Form2::listRecentFiles);
    connect(actionNamed("markedNuclides")->menu(), &QMenu::aboutToShow, this,
            &Form2::listMarkedNuclides);
    // The range shown decides whether it can be scaled by.
    connect(actionNamed("compare")->menu(), &QMenu::aboutToShow, this, &Form2::showMarks);
    showMarks();
}

// What is asked for at a place of the plot. While regions are entered the right button of the mouse
// enters them, so that the menu has its key only.
void Form2::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QRect plot(plotArea->mapTo(this, QPoint()), plotArea->size());
    const bool entering = module_.peakArea.fields.bounds.shown;
    if (!byKey && (entering || !plot.contains(event->pos())))
        return;
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("plotMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    menu->installEventFilter(this);
    for (const char* name :
         {"win_wngy", "peaks", "jump_ch", "showAll", "zoomBack", "fitScale", "savePicture"})
        menu->addAction(actionNamed(name));
    menu->popup(byKey ? mapToGlobal(plot.center()) : event->globalPos());
}

QAction* Form2::actionNamed(const char* name) const {
    return findChild<QAction*>(QString::fromLatin1(name));
}

void Form2::showMarks() {
    for (const Action& action : actions()) {
        if (action.isOn != nullptr)
            actionNamed(action.name)->setChecked((this->*action.isOn)());
        if (action.isUsable != nullptr)
            actionNamed(action.name)->setEnabled((this->*action.isUsable)());
    }
}

void Form2::saveCounts() {
    const bool saved = saveAsCsv(module_.spectrum, module_.settings.lastDirectory, dialogs_);
    if (saved && !countsFitCsv(module_.spectrum))
        module_.notice.add("The counts of some channels do not fit a CSV column.");
    showNotice();
    focusPlot();
}

void Form2::exportSpectrum() {
    exportAs(module_.spectrum, module_.settings.lastDirectory, module_.lastExportFormat, dialogs_);
    focusPlot();
}

void Form2::leave() {
    close();
}

void Form2::showPrintPreview() {
    Form8({module_.spectrum, module_.derived, module_.view}, module_.notice, dialogs_,
          module_.settings.windowPlacement[printPlacement], this)
        .exec();
    focusPlot();
}

void Form2::calibrateEnergy() {
    Form5 form5(module_.spectrum, module_.calibrationChoice, module_.calibrationTexts, dialogs_,
                module_.settings.windowPlacement[calibrationPlacement], this);
    if (form5.exec() == QDialog::Accepted)
        showCalibration();
    focusPlot();
}

void Form2::showAllChannels() {
    view_.showAll();
}

void Form2::fitScale() {
    view_.fitScale();
}

void Form2::zoomBack() {
    view_.zoomBack();
}

void Form2::drawLine() {
    view_.setPlotMode(PlotMode::Line);
}

void Form2::drawDots() {
    view_.setPlotMode(PlotMode::Dots);
}

bool Form2::drawsLine() const {
    return module_.view.plotMode == PlotMode::Line;
}

bool Form2::drawsDots() const {
    return !drawsLine();
}

PeakAreaWork Form2::peakAreaWork() {
    return {module_.spectrum, module_.settings.peakSets, module_.settings.peakSetCount,
            module_.peakArea, dialogs_};
}

void Form2::showPeakArea() {
    if (!form7_ || !form7_->isVisible())
        return showPeakAreaSet(0);
    form7_->raise();
    form7_->activateWindow();
}

// Without a live time there is nothing to measure, and no spectrum loaded as a rule.
bool Form2::canMeasure() const {
    return module_.spectrum.liveTime.wholeSeconds() != 0;
}

void Form2::showPeakAreaSet(std::int16_t set) {
    if (!canMeasure())
        return;
    form7_ = std::make_unique<Form7>(
        peakAreaWork(),
        RegionSource{module_.derived, module_.view.cursorCh, module_.settings.saveAsDir},
        module_.settings.windowPlacement[peakAreaPlacement], [this] { showPeakAreaResults(); },
        this);
    connect(form7_.get(), &Form7::regionsChanged, this, [this] { view_.redraw(); });
    connect(form7_.get(), &Form7::setsChanged, this, &Form2::savePeakRegions);
    form7_->showSet(set);
    activateWindow();
    focusPlot();
}

void Form2::showPeakOfSet() {
    const int middle = form7_ && form7_->isVisible() ? form7_->middleOfPeak() : 0;
    if (middle > 0)
        view_.jumpTo(middle);
}

void Form2::showPeakAreaResults() {
    Settings& settings = module_.settings;
    const ResultSource source{module_.spectrum,   settings.peakSets, settings.peakSetCount,
                              settings.saveAsDir, module_.notice,    dialogs_};
    const auto chooser = [this](const std::string& caption, const std::string& label,
                                QWidget* over) { chooseDirectory(caption, label, over); };
    Form11(source, chooser, settings.windowPlacement[resultPlacement], form7_.get()).exec();
}

void Form2::chooseDirectory(const std::string& caption, const std::string& label, QWidget* over) {
    Settings& settings = module_.settings;
    Form6 form6({settings.marigoldDir, settings.saveAsDir},
                settings.windowPlacement[directoryPlacement], over);
    form6.setWindowTitle(toSigns(caption));
    form6.prompt->setText(toSigns(label));
    form6.exec();
}

void Form2::jumpToChannel() {
    view_.jumpTo(askChannel(dialogs_));
    focusPlot();
}

void Form2::jumpToEnergy() {
    view_.jumpTo(askEnergy(module_.spectrum.calCurrent, dialogs_));
    focusPlot();
}

}  // namespace kestrel
