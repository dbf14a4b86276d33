// Form7, the peak-area data sets: six bounds, their results, and the steps from set to set. It
// stays open beside the main window, whose plot enters the bounds.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

#include "analysis/measured_sets.h"
#include "analysis/peak_data_sets.h"
#include "base/window_placement.h"

namespace kestrel {

class Form7 : public QWidget {
    Q_OBJECT

  public:
    // `showResults` opens the results window. What `work`, `source` and `placement` refer to must
    // outlive the window.
    Form7(const PeakAreaWork& work, const RegionSource& source, WindowPlacement& placement,
          std::function<void()> showResults, QWidget* parent);
    ~Form7() override;
    Form7(const Form7&) = delete;
    Form7& operator=(const Form7&) = delete;

    // Shows the window with a set; one after the last is a new set.
    void showSet(std::int16_t set);

    // Closes the window for another spectrum or the end of the program. False when regions out of
    // order keep it open, as they do at close().
    bool leave();

    // A right click into the plot.
    void enterCursorChannel(std::int16_t cursorCh);
    // A range drawn in the plot.
    void enterRange(std::int16_t from, std::int16_t to);

    // Of the shown set; 0 where there is none.
    int middleOfPeak() const;

    QLineEdit* const lowBackgroundFrom;  // low background
    QLineEdit* const lowBackgroundTo;
    QLineEdit* const peakFrom;  // peak
    QLineEdit* const peakTo;
    QLineEdit* const highBackgroundFrom;  // high background
    QLineEdit* const highBackgroundTo;
    QLineEdit* const netArea;           // net area
    QLineEdit* const countRate;         // count rate
    QLineEdit* const setNumber;         // index of the set
    QLineEdit* const relativeError;     // relative error
    QLineEdit* const remark;            // remark
    QLineEdit* const lowBackgroundSum;  // sums
    QLineEdit* const peakSum;
    QLineEdit* const highBackgroundSum;
    QPushButton* const previousButton;
    QPushButton* const nextButton;
    QPushButton* const clearButton;
    QLineEdit* const centroid;
    QLineEdit* const fwhm;
    QPushButton* const autoButton;
    QPushButton* const allPeaksButton;
    QPushButton* const undoButton;
    QPushButton* const loadButton;

  signals:
    // The plot must draw the regions again.
    void regionsChanged();
    // A set was committed, cleared or left: the table of sets may have changed.
    void setsChanged();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool mayClose();
    std::array<QLineEdit*, 6> bounds() const {
        return {lowBackgroundFrom,  lowBackgroundTo, peakFrom, peakTo,
                highBackgroundFrom, highBackgroundTo};
    }
    QLineEdit* result(const char* name, int columns, const char* accessible);
    QPushButton* button(const char* name, const char* caption, const char* accessible);
    QLabel* label(const char* text);

    void moveBeside(const QWidget& main);
    void placeControls();
    QLayout* regionControls();
    QLayout* resultControls();
    QLayout* buttonRow();
    QLayout* peakControls();
    QLayout* measureButtons();
    void connectControls();
    void setTabOrders();
    void connectMeasuring();

    void showPrevious();
    void showNext();
    void clearSet();
    // An operation that fills sets; where it tells that it did not, nothing has changed.
    void fill(bool (*operation)(const PeakAreaWork& work, const RegionSource& source));
    void undo();
    void keepBeforeTyping();
    void showOutput();

    // Runs an operation and shows what it left in the fields, also where it ended in a fault.
    template <typename Operation>
    auto run(Operation operation);
    void showFields();
    void showPeak();
    void showEntered();                    // what the plot has entered, before it is measured
    void focusBound(std::int16_t number);  // 1 to 6
    void showFocusedField();
    void showWhetherMeasured();

    PeakAreaWork work_;
    RegionSource source_;
    PeakAreaFields& fields_;
    WindowPlacement& placement_;
    std::function<void()> showResults_;
    AreaHistory history_;
    bool typing_ = false;   // what was there before has been kept
    bool leaving_ = false;  // close() is called by leave()
};

}  // namespace kestrel
