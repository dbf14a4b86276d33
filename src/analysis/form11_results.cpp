#include "analysis/form11_results.h"

#include <utility>

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>

#include "analysis/pkm_file.h"
#include "analysis/result_list.h"
#include "analysis/results_printout.h"
#include "base/directory_choice.h"
#include "spectrum/file_name.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int linesShown = 16;

}  // namespace

Form11::Form11(const ResultSource& source, Chooser chooser, WindowPlacement& placement,
               QWidget* parent)
    : ModalForm("Form11", "Kestrel  area Output", placement, parent),
      List1(new TextList(this)),
      Command1(addButton("Command1", "&Save as", "Save the list as a file")),
      Command2(addButton("Command2", "&Printer", "Print the list")),
      Command3(addButton("Command3", "&Cancel", "Close without saving")),
      Command4(addButton("Command4", "&Delete", "Delete the selected lines from the list")),
      source_(source),
      chooser_(std::move(chooser)) {
    placeControls();
    connect(Command1, &QPushButton::clicked, this, &Form11::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &Form11::Command2_Click);
    connect(Command3, &QPushButton::clicked, this, &Form11::reject);
    connect(Command4, &QPushButton::clicked, this, &Form11::Command4_Click);
    auto* remove = new QShortcut(QKeySequence::Delete, List1);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, &Form11::Command4_Click);
    restorePlacement();
    buildResultList();
}

void Form11::placeControls() {
    List1->setObjectName(QStringLiteral("List1"));
    List1->setAccessibleName(tr("Peak-area results"));
    List1->setUniformItemSizes(true);
    auto* headings = new QLabel(toWindow(resultHeadings), this);
    headings->setFont(List1->font());
    headings->setTextFormat(Qt::PlainText);
    // Over the columns of the list, whose texts stand a little inside its frame.
    headings->setContentsMargins(List1->frameWidth() + 3, 0, 0, 0);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {Command1, Command2, Command4, Command3})
        buttons->addWidget(button);
    buttons->insertStretch(3);
    auto* column = new QVBoxLayout(this);
    column->addWidget(headings);
    column->addWidget(List1);
    column->addLayout(buttons);
    const QFontMetrics metrics(List1->font());
    resize(metrics.horizontalAdvance(QLatin1Char('0')) * 101, metrics.height() * (linesShown + 6));
    List1->setFocus();
}

void Form11::buildResultList() {
    if (source_.setCount == 0)
        return;
    List1->clear();
    for (const std::string& line :
         kestrel::buildResultList(source_.spectrum, source_.sets, source_.setCount))
        List1->addItem(toSigns(line));
}

std::vector<std::string> Form11::chosenLines() const {
    std::vector<std::string> lines;
    for (const QString& line : List1->chosenLines())
        lines.push_back(fromWindow(line));
    return lines;
}

void Form11::Command1_Click() {
    const std::string label = "Save as..." + pkmFileName(source_.spectrum);
    const bool chosen = chooseDirectoryOrCurrent(source_.saveAsDir,
                                                 [&] { chooser_("Output file Dir", label, this); });
    if (chosen && savePkmFile(source_.spectrum, source_.saveAsDir, chosenLines(), source_.dialogs))
        accept();
}

void Form11::Command2_Click() {
    const std::unique_ptr<PrintJob> job =
        source_.dialogs.print(baseName(source_.spectrum) + " areas");
    if (job == nullptr)
        return;
    const QString now =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd-HH:mm:ss"));
    printResults(source_.spectrum, chosenLines(), now.toStdString(), *job);
    job->endDocument();
}

void Form11::Command4_Click() {
    for (int i = 0; i < List1->count();) {
        if (List1->item(i)->isSelected())
            delete List1->takeItem(i);
        else
            ++i;
    }
}

}  // namespace kestrel
