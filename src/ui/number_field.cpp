#include "ui/number_field.h"

#include <QEvent>
#include <QTimer>
#include <QValidator>

namespace kestrel {
namespace {

class CommaToPoint : public QValidator {
  public:
    using QValidator::QValidator;
    State validate(QString& input, int& /*cursor*/) const override {
        input.replace(QLatin1Char(','), QLatin1Char('.'));
        return Acceptable;
    }
};

class Selecter : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* field = qobject_cast<QLineEdit*>(watched);
        // Behind the click that gave the focus and that sets the cursor.
        if (event->type() == QEvent::FocusIn && field != nullptr)
            QTimer::singleShot(0, field, &QLineEdit::selectAll);
        return QObject::eventFilter(watched, event);
    }
};

}  // namespace

void takeNumbers(QLineEdit& field) {
    field.setValidator(new CommaToPoint(&field));
    selectOnFocus(field);
}

void selectOnFocus(QLineEdit& field) {
    field.installEventFilter(new Selecter(&field));
}

}  // namespace kestrel
