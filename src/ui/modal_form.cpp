#include "ui/modal_form.h"

#include <QKeyEvent>

#include "ui/fonts.h"
#include "ui/placement.h"

namespace kestrel {
namespace {

constexpr double fieldPoints = 11;

class Field : public QLineEdit {
  public:
    using QLineEdit::QLineEdit;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        QLineEdit::keyPressEvent(event);
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            event->accept();
    }
};

}  // namespace

ModalForm::ModalForm(const char* name, const char* caption, WindowPlacement& placement,
                     QWidget* parent)
    : QDialog(parent), placement_(placement) {
    setObjectName(QString::fromLatin1(name));
    setWindowTitle(QString::fromLatin1(caption));
}

void ModalForm::restorePlacement() {
    if (placement_.width != 0)
        place(*this, placement_);
}

void ModalForm::done(int result) {
    placement_ = placementOf(*this);
    QDialog::done(result);
}

// No button is worked from a text field: there Enter goes to the next field, or does what the form
// says.
void ModalForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return QDialog::keyPressEvent(event);
    if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
        button->click();
}

QPushButton* ModalForm::addButton(const char* name, const char* caption, const char* accessible) {
    auto* button = new QPushButton(QString::fromLatin1(caption), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setAccessibleName(QString::fromLatin1(accessible));
    button->setAutoDefault(false);
    return button;
}

QLineEdit* fixedPitchField(QWidget* parent, const char* name, int columns, const char* accessible) {
    auto* field = new Field(parent);
    field->setObjectName(QString::fromLatin1(name));
    field->setAccessibleName(QString::fromLatin1(accessible));
    field->setFont(fixedPitchFont(fieldPoints));
    // The frame and the margins of the text on both sides take about two columns.
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QLatin1Char('0')) *
                           (columns + 2));
    return field;
}

}  // namespace kestrel
