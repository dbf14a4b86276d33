// Form6, the directory chooser for the settings marked with "?".
#pragma once

#include <string>

#include <QComboBox>
#include <QLabel>
#include <QListWidget>

#include "base/directory_choice.h"
#include "ui/modal_form.h"

namespace kestrel {

class Form6 : public ModalForm {
    Q_OBJECT

  public:
    // What both refer to must outlive the window.
    Form6(const ChosenDirectories& directories, WindowPlacement& placement, QWidget* parent);

    QLabel* const prompt;
    QComboBox* const volumes;    // the root, the home folder and the mounted volumes
    QListWidget* const folders;  // the folders from the root to the current one, and those in it
    QLineEdit* const chosenFolder;
    QPushButton* const okButton;
    QPushButton* const cancelButton;

  private:
    void placeControls();
    void showStartFolder();
    void fillDrives();
    void openVolume();
    void openFolder();
    void acceptFolder();

    // Lists a folder in Dir1; one that is gone is replaced by the nearest one that exists.
    void setFolder(const QString& path);
    void addFolder(const QString& path, const QString& name, int depth);

    ChosenDirectories directories_;
    QString folder_;  // the one that Dir1 shows
};

}  // namespace kestrel
