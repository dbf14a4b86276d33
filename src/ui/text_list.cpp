#include "ui/text_list.h"

#include "ui/copying.h"
#include "ui/fonts.h"

namespace kestrel {
namespace {

constexpr double points = 11;

}  // namespace

// Qt's own list copies the current line only.
TextList::TextList(QWidget* parent) : QListWidget(parent) {
    setFont(fixedPitchFont(points));
    setSelectionMode(ExtendedSelection);
    offerCopying(
        *this, [this] { return chosenLines().join(QLatin1Char('\n')); },
        [this] { return lines(Lines::All).join(QLatin1Char('\n')); });
}

QStringList TextList::chosenLines() const {
    return lines(selectedItems().isEmpty() ? Lines::All : Lines::Selected);
}

QStringList TextList::lines(Lines which) const {
    QStringList lines;
    for (int i = 0; i < count(); ++i) {
        if (which == Lines::All || item(i)->isSelected())
            lines += item(i)->text();
    }
    return lines;
}

}  // namespace kestrel
