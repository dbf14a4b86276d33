// Form11, the peak-area results: the list of all measured peaks, to be trimmed, saved and printed.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "analysis/peak_area_set.h"
#include "base/dialogs.h"
#include "spectrum/notice.h"
#include "ui/modal_form.h"
#include "ui/text_list.h"

namespace kestrel {

// What the window lists and where it saves.
struct ResultSource {
    const Spectrum& spectrum;
    PeakAreaTable& sets;
    std::int16_t setCount;
    std::string& saveAsDir;
    const Notice& notice;
    Dialogs& dialogs;
};

class Form11 : public ModalForm {
    Q_OBJECT

  public:
    // Opens the directory chooser with a window caption and a label, over the window given.
    using Chooser =
        std::function<void(const std::string& caption, const std::string& label, QWidget* over)>;

    // What `source` refers to and `placement` must outlive the window.
    Form11(const ResultSource& source, Chooser chooser, WindowPlacement& placement,
           QWidget* parent);

    TextList* const resultLines;
    QPushButton* const saveButton;
    QPushButton* const printButton;
    QPushButton* const cancelButton;
    QPushButton* const deleteButton;

  private:
    void placeControls();
    void buildResultList();
    void saveList();
    void printList();
    void deleteSelected();
    // The selected lines; all where none is selected.
    std::vector<std::string> chosenLines() const;

    ResultSource source_;
    Chooser chooser_;
};

}  // namespace kestrel
