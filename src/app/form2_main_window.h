// Form2, the main window: one spectrum in its plot area, a row of buttons, the status line and the
// menus.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>

#include "analysis/form7_peak_area.h"
#include "app/module1.h"
#include "base/dialogs.h"
#include "nuclide/form12_nuclide_data.h"
#include "nuclide/form9_energy_list.h"
#include "peaks/form13_peaks.h"
#include "spectrum/form10_data_information.h"
#include "spectrum/open_spectrum.h"
#include "spectrum/series.h"
#include "ui/notice_line.h"
#include "view/picture_box.h"
#include "view/picture_box_strip.h"
#include "view/spectrum_view.h"

namespace kestrel {

class ReadingWindow;

class Form2 : public QMainWindow, private ViewWindow, private NuclideWindows {
    Q_OBJECT

  public:
    // Both must outlive the window. The state is started already.
    Form2(Module1& module, Dialogs& dialogs);

    // Opens a file handed over from outside; `path` is a full one.
    void openSpectrumPath(const std::string& path);

    // Saves the settings without a question, as the session ends.
    void endSession();

    // Draws what is still to be drawn; for tests and screenshots.
    const QImage& picture() { return plotArea->picture(); }

    // A text in Markdown: the keys of the main window.
    static QString keysPage();

    PictureBox* const plotArea;
    PictureStrip* const energyStrip;
    QPushButton* const expandButton;
    QPushButton* const countAxisButton;
    QPushButton* const lowerScaleButton;
    QPushButton* const raiseScaleButton;
    QPushButton* const stepLeftButton;
    QPushButton* const stepRightButton;
    QPushButton* const shrinkButton;
    QLineEdit* const statusLine;
    QLabel* const pointerStatus;  // what is under the pointer
    QLabel* const secondStatus;   // what is told of a second spectrum, below the plot

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    // A menu, an item of one, or a separator.
    struct Action {
        const char* menu = "";           // object name of the menu that it stands in; none: the bar
        const char* name = "";           // object name
        const char* caption = "";        // none: a separator
        const char* plotKeys = "";       // keys of the plot that do the same, as people are told
        const char* shortcut = "";       // bound to the item
        const char* does = "";           // a sentence without its point
        void (Form2::*run)() = nullptr;  // none: a menu
        bool (Form2::*isOn)() const = nullptr;      // none: the item has no mark
        bool (Form2::*isUsable)() const = nullptr;  // none: always; else it is grey
    };
    static std::span<const Action> actions();
    static QString toolTipOf(const Action& action);
    QAction* makeMenu(QWidget& parent, const Action& action);
    static void setKeysOf(QAction& item, const Action& action);
    QAction* makeItem(QWidget& parent, const Action& action);
    void buildMenus();
    QAction* actionNamed(const char* name) const;
    // Marks the items as the state is, and greys those that can do nothing.
    void showMarks();

    void saveCounts();
    void exportSpectrum();
    void leave();
    void switchEnergyAxis();
    bool showsEnergyAxis() const;
    template <ColourScheme scheme>
    void useColours() {
        module_.preferences.colours = scheme;
        showLook();
    }
    template <ColourScheme scheme>
    bool usesColours() const {
        return module_.preferences.colours == scheme;
    }
    template <bool PlotLook::*part>
    void switchLook() {
        module_.preferences.*part = !(module_.preferences.*part);
        showLook();
    }
    template <bool PlotLook::*part>
    bool looks() const {
        return module_.preferences.*part;
    }
    template <bool Preferences::*choice>
    void switchMarkChoice() {
        module_.preferences.*choice = !(module_.preferences.*choice);
        showNuclideMarks();
    }
    template <bool Preferences::*choice>
    bool marksBy() const {
        return module_.preferences.*choice;
    }
    void savePicture();
    void drawPlot(Canvas& canvas) const;
    void takeLook();
    void showLook();
    void showAllChannels();
    void fitScale();
    void zoomBack();
    void drawLine();
    void drawDots();
    bool drawsLine() const;
    bool drawsDots() const;
    void calibrateEnergy();
    void showPeakArea();
    void showPeakAreaSet(std::int16_t set);
    void showPeakOfSet();
    void jumpToChannel();
    void jumpToEnergy();

    void showGuide();
    void showKeys();
    void showAbout();
    QString aboutPage();
    ReadingWindow& readingWindow(const char* name, const QString& title);

    void placeControls();
    void connectControls();
    void showAtStart();
    void plotResized();
    void showPointer(double x);
    // Whether what is drawn with the mouse is a region, not what to zoom to.
    bool drawsRegion(int shift) const;
    void showDrawn(int shift, double from, double to);
    void takeDrawn(int shift, double from, double to);
    void plotPressed(int button, int shift, double x, double y);

    std::optional<SecondCounts> secondForPeaks() const;
    PeaksContext peaksContext();
    void showPeaks();
    void calibrateFromPeaks();
    void useLastPeakCalibration();
    bool hasLastPeakCalibration() const;
    void showCalibration();

    void openSecondFile();
    void swapSpectra();
    void switchDifference();
    bool showsDifference() const;
    void removeSecond();
    bool canMeasure() const;
    bool hasSecond() const;
    template <CompareScale scale>
    void scaleSecond() {
        module_.comparison.scale = scale;
        view_.redraw();
    }
    template <CompareScale scale>
    bool scalesSecond() const {
        return module_.comparison.scale == scale;
    }
    template <CompareScale scale>
    bool canScaleSecond() const {
        return canScale(scale);
    }
    bool canScale(CompareScale scale) const;
    void showSecond();
    void showSecondLine();
    // What follows from a spectrum, or a calibration, that has changed or may have.
    void followSpectrum();

    void askNuclide();
    void selectNuclide(const std::string& key);
    void chooseDatabaseDir();
    void switchNuclideMarks();
    void buildMarks();
    void showNuclideMarks();
    MarkedNuclide shownNuclide() const;
    void listMarkedNuclides();
    void removeMarked(std::size_t number);
    std::vector<PlacedText> markTextsOn(const Canvas& canvas) const;
    void openSpectrumFile();
    void openAnyFile();
    void listRecentFiles();
    void openNextFile();
    void openPreviousFile();
    void leaf(Direction direction);
    OpenTarget openTarget();
    // Opens with `open`, an operation that returns an OpenResult, and shows what came of it: the
    // plot by `showPlot`, and a set of peak areas.
    template <typename Open, typename ShowPlot>
    void openWith(Open open, ShowPlot showPlot, std::int16_t peakSet);
    template <typename Open>
    void openWith(Open open);
    // What shows it anew but for the plot, which `showPlot` draws, and a set of peak areas.
    void showLoaded(const std::function<void()>& showPlot, std::int16_t peakSet);
    void showNotice();
    void restoreSpectrum();
    void closeNotice();
    void showCaption();
    PeakAreaWork peakAreaWork();
    void showPeakAreaResults();
    void chooseDirectory(const std::string& caption, const std::string& label, QWidget* over);
    void showDataInformation();
    void showPrintPreview();
    bool closeOtherWindows();
    bool saveSettings();
    void savePeakRegions();

    void showStatus(std::string_view text) override;
    void placeCursorMark(const CursorMark& mark) override;
    void pictureDrawn() override;
    void showCountAxis(CountAxis axis) override;
    void focusPlot() override;
    void run(PlotCommand command) override;

    void showMainWindow() override;
    void showEnergyList() override;
    void showNuclideData() override;
    void switchMarkedNuclide() override;

    PlotInput plotInput() const;

    Module1& module_;
    Dialogs& dialogs_;
    NoticeLine* const noticeLine_;
    SpectrumView view_;
    std::unique_ptr<Form7> form7_;
    std::unique_ptr<Form10> form10_;
    QPointer<Form9> form9_;        // a closed one is gone
    QPointer<Form12> form12_;      // likewise
    QPointer<PeaksWindow> peaks_;  // likewise
    bool regionsUnsaved_ = false;  // the last attempt to save them failed
};

// "Kestrel  Ver: 1. 0 Rev: 0", blanks included.
QString baseCaption();

}  // namespace kestrel
