// Form9, the energy list window: the lines near the energy at the cursor, and the filters.
#pragma once

#include <array>
#include <functional>

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QWidget>

#include "base/dialogs.h"
#include "base/palette.h"
#include "base/window_placement.h"
#include "nuclide/energy_list.h"
#include "nuclide/nuclide_windows.h"
#include "ui/grid.h"

namespace kestrel {

// What the window reads and writes of the program's state. All of it must outlive the window.
struct EnergyListContext {
    const std::int16_t& cursorCh;
    const Calibration& calibration;
    const std::string& marigoldDir;
    const Palette& palette;
    WindowPlacement& placement;
    NuclideDatabase& database;
    Dialogs& dialogs;
    NuclideWindows& windows;
    std::function<void(const std::string& key)> selectNuclide;
};

class Form9 : public QWidget {
    Q_OBJECT

  public:
    Form9(EnergyListContext context, QWidget* parent);

    // What stands on the page "Gate".
    EnergyEntries entries() const;

    QTabWidget* const tabs;
    Grid* const lineGrid;
    QLineEdit* const databaseDate;
    QLineEdit* const findField;
    std::array<QLineEdit*, 10> gateFields{};  // number 8 does not exist
    std::array<QRadioButton*, 5> decayOptions{};
    std::array<QRadioButton*, 5> radiationOptions{};

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void buildListTab();
    void buildGateTab();
    QWidget* entryFrame(const char* caption, std::initializer_list<int> entries, const char* unit);
    template <std::size_t N>
    QWidget* optionFrame(const char* caption, const char* name,
                         const std::array<const char*, N>& captions,
                         std::array<QRadioButton*, N>& options);

    void activated();
    void tabChosen(int tab);
    void gridKeyDown(int keyCode);
    void pickRow(int row);
    // The first row of the nuclide that is typed, from the current one or from the next on.
    void findNuclide(int rowsOn);
    void refreshList();
    void resetGate();
    void showList();

    QLabel* const cursorEnergy_;
    QLabel* const hiddenLines_;
    EnergyListContext context_;
    EnergyListState state_;
};

}  // namespace kestrel
