#include "ui/text_list.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

#include "ui/fonts.h"

namespace kestrel {
namespace {

constexpr double points = 11;

}  // namespace

TextList::TextList(QWidget* parent) : QListWidget(parent) {
    setFont(fixedPitchFont(points));
    setSelectionMode(ExtendedSelection);
}

QStringList TextList::chosenLines() const {
    const bool all = selectedItems().isEmpty();
    QStringList lines;
    for (int i = 0; i < count(); ++i) {
        if (all || item(i)->isSelected())
            lines += item(i)->text();
    }
    return lines;
}

// Qt's own list copies the current line only.
void TextList::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        QGuiApplication::clipboard()->setText(chosenLines().join(QLatin1Char('\n')));
    else
        QListWidget::keyPressEvent(event);
}

}  // namespace kestrel
