// The menu tree of the main window, and what its items do.

#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

#include "analysis/form11_results.h"
#include "analysis/form5_energy_calibration.h"
#include "app/form2_main_window.h"
#include "app/form6_directory.h"
#include "print/form8_print_preview.h"
#include "spectrum/csv_export.h"
#include "ui/text_codec.h"
#include "view/jumps.h"

namespace kestrel {
namespace {

constexpr int calibrationPlacement = 5;
constexpr int directoryPlacement = 6;
constexpr int peakAreaPlacement = 7;
constexpr int printPlacement = 8;
constexpr int resultPlacement = 11;

QString itemName(const char* control, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(control)).arg(index);
}

template <typename Handler>
QAction* addItem(QWidget* menu, const QString& name, const char* caption, Handler handler) {
    auto* action = new QAction(QString::fromLatin1(caption), menu);
    action->setObjectName(name);
    QObject::connect(action, &QAction::triggered, menu, [handler] { handler(); });
    menu->addAction(action);
    return action;
}

}  // namespace

void Form2::buildMenus() {
    buildFileMenu();
    addItem(menuBar(), QStringLiteral("pkarea"), "&pkArea", [this] { pkarea_Click(); });
    buildJumpMenu();
    buildOptionMenu();
    buildWindowMenu();
}

void Form2::buildFileMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&File"));
    const auto add = [this, menu](int index, const char* caption) {
        addItem(menu, itemName("f11", index), caption, [this, index] { f11_Click(index); });
    };
    add(0, "&Open File...");
    add(1, "&Data Inform");
    add(4, "&Save as CSV");
    add(20, "&Print");
    menu->addSeparator()->setObjectName(itemName("f11", 30));
    add(40, "E&xit");
    menu->addSeparator();
    QAction* any =
        addItem(menu, QStringLiteral("openAny"), "Open &Any File...", [this] { openAnyFile(); });
    any->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
}

void Form2::buildJumpMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Jump"));
    menu->menuAction()->setObjectName(QStringLiteral("jump"));
    addItem(menu, QStringLiteral("jump_ch"), "&Ch", [this] { jump_ch_Click(); });
    addItem(menu, QStringLiteral("jump_engy"), "&Energy", [this] { jump_engy_Click(); });
}

void Form2::buildOptionMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Option"));
    menu->menuAction()->setObjectName(QStringLiteral("optn"));
    const auto add = [this, menu](int index, const char* caption) {
        addItem(menu, itemName("o11", index), caption, [this, index] { o11_Click(index); });
    };
    add(0, "&Energy Calib");
    add(1, "&NuclDB Dir");
    QMenu* modes = menu->addMenu(QStringLiteral("&Plot Mode"));
    modes->menuAction()->setObjectName(itemName("o11", 2));
    auto* group = new QActionGroup(modes);
    for (const auto& [index, caption] : {std::pair{0, "&Line"}, std::pair{1, "&Dots"}}) {
        QAction* mode = addItem(modes, itemName("o111", index), caption,
                                [this, index = index] { o111_Click(index); });
        mode->setCheckable(true);
        mode->setChecked(index == 0);
        group->addAction(mode);
    }
    add(3, "Nucl&ROI(ON/OFF)");
}

void Form2::buildWindowMenu() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Window"));
    menu->menuAction()->setObjectName(QStringLiteral("win"));
    addItem(menu, QStringLiteral("win_wngy"), "Open &EnergyList", [this] { win_wngy_Click(); });
    addItem(menu, QStringLiteral("win_nd"), "Open &NuclData", [this] { win_nd_Click(); });
}

void Form2::f11_Click(int index) {
    switch (index) {
        case 0:
            openSpectrumFile();
            break;
        case 1:
            showDataInformation();
            break;
        case 4:
            saveAsCsv(module_.spectrum, module_.settings.lastDirectory, dialogs_);
            focusPlot();
            break;
        case 20:
            showPrintPreview();
            break;
        case 40:
            close();
            break;
        default:
            break;
    }
}

void Form2::showPrintPreview() {
    Form8({module_.spectrum, module_.derived, module_.view}, dialogs_,
          module_.settings.windowPlacement[printPlacement], this)
        .exec();
    focusPlot();
}

void Form2::o11_Click(int index) {
    switch (index) {
        case 0:
            calibrateEnergy();
            break;
        case 1:
            chooseDatabaseDir();
            break;
        case 3:
            switchNuclideMarks();
            break;
        default:
            break;
    }
}

void Form2::calibrateEnergy() {
    Form5 form5(module_.spectrum, module_.calibrationTexts, dialogs_,
                module_.settings.windowPlacement[calibrationPlacement], this);
    if (form5.exec() == QDialog::Accepted)
        view_.redraw();
    focusPlot();
}

void Form2::o111_Click(int index) {
    view_.setPlotMode(index == 0 ? PlotMode::Line : PlotMode::Dots);
}

PeakAreaWork Form2::peakAreaWork() {
    return {module_.spectrum, module_.settings.peakSets, module_.settings.peakSetCount,
            module_.peakArea, dialogs_};
}

// Without a live time there is nothing to measure, and no spectrum loaded as a rule.
void Form2::pkarea_Click() {
    if (module_.spectrum.liveTime == 0)
        return;
    if (form7_ && form7_->isVisible()) {
        form7_->raise();
        form7_->activateWindow();
        return;
    }
    form7_ = std::make_unique<Form7>(
        peakAreaWork(), module_.settings.windowPlacement[peakAreaPlacement],
        [this] { showPeakAreaResults(); }, this);
    connect(form7_.get(), &Form7::regionsChanged, this, [this] { view_.redraw(); });
    connect(form7_.get(), &Form7::setsChanged, this, &Form2::savePeakRegions);
    form7_->Form_Load();
    activateWindow();
    focusPlot();
}

void Form2::showPeakAreaResults() {
    Settings& settings = module_.settings;
    const ResultSource source{module_.spectrum, settings.peakSets, settings.peakSetCount,
                              settings.saveAsDir, dialogs_};
    const auto chooser = [this](const std::string& caption, const std::string& label,
                                QWidget* over) { chooseDirectory(caption, label, over); };
    Form11(source, chooser, settings.windowPlacement[resultPlacement], form7_.get()).exec();
}

void Form2::chooseDirectory(const std::string& caption, const std::string& label, QWidget* over) {
    Settings& settings = module_.settings;
    Form6 form6({settings.marigoldDir, settings.saveAsDir},
                settings.windowPlacement[directoryPlacement], over);
    form6.setWindowTitle(toSigns(caption));
    form6.Label1->setText(toSigns(label));
    form6.exec();
}

void Form2::jump_ch_Click() {
    view_.jumpTo(askChannel(dialogs_));
    focusPlot();
}

void Form2::jump_engy_Click() {
    view_.jumpTo(askEnergy(module_.spectrum.calCurrent, dialogs_));
    focusPlot();
}

}  // namespace kestrel
