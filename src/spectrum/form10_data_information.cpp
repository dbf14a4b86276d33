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
      header(new TextList(this)),
      headerLines_(headerLines),
      placement_(placement) {
    setObjectName(QStringLiteral("Form10"));
    setWindowTitle(QStringLiteral("Kestrel - Data Inform"));
    header->setObjectName(QStringLiteral("List1"));
    header->setAccessibleName(tr("Data information"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(header);
    resize(720, 190);
    if (placement_.width != 0)
        place(*this, placement_);
    refresh();
}

void Form10::refresh() {
    header->clear();
    for (const std::string& line : headerLines_)
        header->addItem(toSigns(line));
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
