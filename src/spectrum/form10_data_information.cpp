#include "spectrum/form10_data_information.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "ui/placement.h"
#include "ui/text_codec.h"

namespace kestrel {

Form10::Form10(const std::vector<std::string>& headerLines, WindowPlacement& placement,
               QWidget* parent)
    : QWidget(parent, Qt::Window),
      List1(new TextList(this)),
      headerLines_(headerLines),
      placement_(placement) {
    setObjectName(QStringLiteral("Form10"));
    setWindowTitle(QStringLiteral("Kestrel - Data Inform"));
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Data information"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(List1);
    resize(720, 190);
    if (placement_.width != 0)
        place(*this, placement_);
    refresh();
}

void Form10::refresh() {
    List1->clear();
    for (const std::string& line : headerLines_)
        List1->addItem(toSigns(line));
}

void Form10::closeEvent(QCloseEvent* event) {
    placement_ = placementOf(*this);
    QWidget::closeEvent(event);
}

void Form10::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kestrel
