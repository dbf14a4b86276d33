// Form12, the nuclide data window: half-life, decay modes and lines of one nuclide state.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QWidget>

#include "base/dialogs.h"
#include "base/palette.h"
#include "base/window_placement.h"
#include "nuclide/nuclide_data.h"
#include "nuclide/nuclide_windows.h"
#include "ui/grid.h"
#include "ui/text_list.h"

namespace kestrel {

// What the window reads and writes of the program's state. All of it must outlive the window.
struct NuclideDataContext {
    NuclideData& data;
    std::string& selectedNuclide;
    const std::string& marigoldDir;
    const Palette& palette;
    WindowPlacement& placement;
    NuclideDatabase& database;
    Dialogs& dialogs;
    NuclideWindows& windows;
};

class Form12 : public QWidget {
    Q_OBJECT

  public:
    Form12(NuclideDataContext context, QWidget* parent);

    void ShowNuclideFromDatabase();

    TextList* const summary;
    QLineEdit* const databaseDate;
    Grid* const lineGrid;
    QComboBox* const kindChoice;
    QLineEdit* const findField;

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void placeControls();
    QLayout* choiceRow();
    void askNuclide();
    void findNuclide();
    void choose(const std::string& key);
    bool isShown(const NuclideRow& line) const;
    void showLines();
    void gridKeyDown(int keyCode);
    void showData();

    NuclideDataContext context_;
};

}  // namespace kestrel
