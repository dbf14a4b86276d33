// What the modal windows have in common: they come up where they were left, Enter works the button
// that has the focus, Escape closes.
#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include "base/window_placement.h"

namespace kestrel {

class ModalForm : public QDialog {
    Q_OBJECT

  public:
    // `placement` must outlive the window.
    ModalForm(const char* name, const char* caption, WindowPlacement& placement, QWidget* parent);

    // Every way to close comes through here.
    void done(int result) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

    // To be called once the window has its designed size.
    void restorePlacement();

    QPushButton* addButton(const char* name, const char* caption, const char* accessible);

  private:
    WindowPlacement& placement_;
};

// A text field of the fixed-pitch font that shows `columns` characters. Enter ends in the field:
// where that moves the focus to a button, the same key does not press it as well.
QLineEdit* fixedPitchField(QWidget* parent, const char* name, int columns, const char* accessible);

}  // namespace kestrel
