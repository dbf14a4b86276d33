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
#include "ui/notice_line.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int linesShown = 16;

}  // namespace

Form11::Form11(const ResultSource& source, Chooser chooser, WindowPlacement& placement,
               QWidget* parent)
    : ModalForm("Form11", "Kestrel  area Output", placement, parent),
      resultLines(new TextList(this)),
      saveButton(addButton("Command1", "&Save as", "Save the list as a file")),
      printButton(addButton("Command2", "&Printer", "Print the list")),
      cancelButton(addButton("Command3", "&Cancel", "Close without saving")),
      deleteButton(addButton("Command4", "&Delete", "Delete the selected lines from the list")),
      source_(source),
      chooser_(std::move(chooser)) {
    placeControls();
    connect(saveButton, &QPushButton::clicked, this, &Form11::saveList);
    connect(printButton, &QPushButton::clicked, this, &Form11::printList);
    connect(cancelButton, &QPushButton::clicked, this, &Form11::reject);
    connect(deleteButton, &QPushButton::clicked, this, &Form11::deleteSelected);
    auto* remove = new QShortcut(QKeySequence::Delete, resultLines);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, &Form11::deleteSelected);
    restorePlacement();
    buildResultList();
}

void Form11::placeControls() {
    resultLines->setObjectName(QStringLiteral("List1"));
    resultLines->setAccessibleName(tr("Peak-area results"));
    resultLines->setUniformItemSizes(true);
    auto* headings = new QLabel(toWindow(resultHeadings), this);
    headings->setFont(resultLines->font());
    headings->setTextFormat(Qt::PlainText);
    // Over the columns of the list, whose texts stand a little inside its frame.
    headings->setContentsMargins(resultLines->frameWidth() + 3, 0, 0, 0);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {saveButton, printButton, deleteButton, cancelButton})
        buttons->addWidget(button);
    buttons->insertStretch(3);
    auto* column = new QVBoxLayout(this);
    auto* notice = new NoticeLine(NoticeLine::Kind::TextOnly, this);
    notice->say(source_.notice.text());
    column->addWidget(notice);
    column->addWidget(headings);
    column->addWidget(resultLines);
    column->addLayout(buttons);
    const QFontMetrics metrics(resultLines->font());
    resize(metrics.horizontalAdvance(QLatin1Char('0')) * 101, metrics.height() * (linesShown + 6));
    resultLines->setFocus();
}

void Form11::buildResultList() {
    if (source_.setCount == 0)
        return;
    resultLines->clear();
    for (const std::string& line :
         kestrel::buildResultList(source_.spectrum, source_.sets, source_.setCount))
        resultLines->addItem(toSigns(line));
}

std::vector<std::string> Form11::chosenLines() const {
    std::vector<std::string> lines;
    for (const QString& line : resultLines->chosenLines())
        lines.push_back(fromWindow(line));
    return lines;
}

void Form11::saveList() {
    const std::string label = "Save as..." + pkmFileName(source_.spectrum);
    const bool chosen = chooseDirectoryOrCurrent(source_.saveAsDir,
                                                 [&] { chooser_("Output file Dir", label, this); });
    if (chosen && savePkmFile(source_.spectrum, source_.saveAsDir, chosenLines(), source_.dialogs))
        accept();
}

void Form11::printList() {
    const std::unique_ptr<PrintJob> job =
        source_.dialogs.print(baseName(source_.spectrum) + " areas");
    if (job == nullptr)
        return;
    const QString now =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd-HH:mm:ss"));
    printResults(source_.spectrum, chosenLines(), now.toStdString(), *job);
    job->endDocument();
}

void Form11::deleteSelected() {
    for (int i = 0; i < resultLines->count();) {
        if (resultLines->item(i)->isSelected())
            delete resultLines->takeItem(i);
        else
            ++i;
    }
}

}  // namespace kestrel
