#include "ui/qt_dialogs.h"

#include <cctype>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>

#include "ui/number_field.h"
#include "ui/old_names.h"
#include "ui/print_job.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

// The object name of the list of filters in Qt's own dialog.
constexpr const char* filterList = "fileTypeCombo";

constexpr double pageMargin = 10;  // of a sheet of paper, in mm, unless the user sets another

QMessageBox::Icon toQtIcon(Icon icon) {
    switch (icon) {
        case Icon::Question:
            return QMessageBox::Question;
        case Icon::Exclamation:
            return QMessageBox::Warning;
        case Icon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

// A pattern such as "*.chn" for either letter case: "*.[cC][hH][nN]". "*.*" means every file, also
// one without a point in its name.
QString toQtPattern(const std::string& pattern) {
    if (pattern == "*.*")
        return QStringLiteral("*");
    QString result;
    for (const char c : pattern) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalpha(byte) != 0)
            result +=
                QStringLiteral("[%1%2]").arg(QChar(std::tolower(byte)), QChar(std::toupper(byte)));
        else
            result += QChar(byte);
    }
    return result;
}

QStringList toQtFilters(const std::vector<FileFilter>& filters) {
    QStringList result;
    for (const FileFilter& filter : filters)
        result += toWindow(filter.text) + QStringLiteral(" (") + toQtPattern(filter.pattern) +
                  QLatin1Char(')');
    return result;
}

// Qt's own dialog folds blanks in the texts of its filter list; here they are set to the blank.
void setFilterTexts(QComboBox& list, const std::vector<FileFilter>& filters) {
    for (std::size_t i = 0; i < filters.size(); ++i)
        list.setItemText(static_cast<int>(i), toWindow(filters[i].text));
}

// The entry that is selected, counted from 1. A desktop's dialog hands back the text of a filter,
// with or without its pattern and with blanks folded.
int selectedFilter(const QFileDialog& dialog, const FileDialog& request) {
    if (const auto* list = dialog.findChild<QComboBox*>(QString::fromLatin1(filterList)))
        return list->currentIndex() + 1;
    const QString selected = dialog.selectedNameFilter().simplified();
    for (std::size_t i = 0; i < request.filters.size(); ++i) {
        if (selected.startsWith(toWindow(request.filters[i].text).simplified()))
            return static_cast<int>(i) + 1;
    }
    return request.filterIndex;
}

void prepare(QFileDialog& dialog, const FileDialog& request) {
    dialog.setWindowTitle(toWindow(request.title));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    const QStringList filters = toQtFilters(request.filters);
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters.value(request.filterIndex - 1));
    dialog.setDirectory(request.folder.empty() ? QDir::currentPath()
                                               : QFile::decodeName(request.folder.c_str()));
    if (auto* list = dialog.findChild<QComboBox*>(QString::fromLatin1(filterList))) {
        setFilterTexts(*list, request.filters);
        list->setCurrentIndex(request.filterIndex - 1);
    }
    if (!request.fileName.empty())
        dialog.selectFile(QFile::decodeName(request.fileName.c_str()));
}

// An ending that is not typed, that of the filter; Qt asks about the file that then has the name.
void addEndings(QFileDialog& dialog, const FileDialog& request) {
    const auto follow = [&] {
        const auto filter = static_cast<std::size_t>(selectedFilter(dialog, request)) - 1;
        dialog.setDefaultSuffix(
            toWindow(request.filters.at(filter).pattern).section(QLatin1Char('.'), 1));
    };
    follow();
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
}

// Below the dialog's own controls, those files that it cannot list. A choice there ends the dialog
// and stands in `path`. A desktop's dialog has no place for them.
void addOldNames(QFileDialog& dialog, const FileDialog& request, std::string& path) {
    if (OldNames::areIn(dialog.directory().absolutePath()))
        dialog.setOption(QFileDialog::DontUseNativeDialog);
    auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
    if (grid == nullptr)
        return;
    auto* names = new OldNames(&dialog);
    grid->addWidget(names, grid->rowCount(), 0, 1, grid->columnCount());
    const auto follow = [&dialog, &request, names] {
        const auto filter = static_cast<std::size_t>(selectedFilter(dialog, request)) - 1;
        names->list(dialog.directory().absolutePath(),
                    toQtPattern(request.filters.at(filter).pattern).split(QLatin1Char(' ')));
    };
    follow();
    QObject::connect(&dialog, &QFileDialog::filterSelected, names, follow);
    QObject::connect(&dialog, &QFileDialog::directoryEntered, names, follow);
    QObject::connect(names, &OldNames::chosen, &dialog, [&](const std::string& chosen) {
        path = chosen;
        static_cast<QDialog&>(dialog).done(QDialog::Accepted);
    });
}

FileChoice chooseFile(const FileDialog& request, QFileDialog::AcceptMode mode) {
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    prepare(dialog, request);
    if (mode == QFileDialog::AcceptSave && !request.filters.empty())
        addEndings(dialog, request);
    std::string oldName;
    if (mode == QFileDialog::AcceptOpen && !request.filters.empty())
        addOldNames(dialog, request, oldName);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    FileChoice choice{.path = {}, .filterIndex = selectedFilter(dialog, request)};
    if (!oldName.empty()) {
        QDir::setCurrent(dialog.directory().absolutePath());
        choice.path = oldName;
    } else if (accepted && !dialog.selectedFiles().isEmpty()) {
        const QString path = dialog.selectedFiles().constFirst();
        QDir::setCurrent(QFileInfo(path).absolutePath());
        choice.path = QFile::encodeName(path).toStdString();
    }
    return choice;
}

// So that no text makes a box that the screen has no room for: of a long line the middle is left
// out, of many rows the end. A row of a box takes some 40 signs.
QString boxText(const std::string& text, qsizetype mostRows) {
    constexpr qsizetype signsInRow = 40;
    constexpr qsizetype longestLine = 200;
    // A carriage return breaks the line too.
    const QString plain = asSigns(toWindow(text).replace(QLatin1Char('\r'), QLatin1Char('\n')));
    QStringList lines;
    qsizetype rows = 0;
    for (QString line : plain.split(QLatin1Char('\n'))) {
        if (line.size() > longestLine)
            line =
                line.left(longestLine / 2) + QStringLiteral(" ... ") + line.right(longestLine / 2);
        rows += 1 + line.size() / signsInRow;
        if (rows > mostRows) {
            lines += QStringLiteral("...");
            break;
        }
        lines += line;
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace

bool QtDialogs::message(const MessageBox& box) {
    QMessageBox dialog(QApplication::activeWindow());
    dialog.setIcon(toQtIcon(box.icon));
    dialog.setWindowTitle(toSigns(box.title));
    constexpr qsizetype textRows = 14;
    constexpr qsizetype detailRows = 9;
    dialog.setText(boxText(box.text, textRows));
    dialog.setInformativeText(boxText(box.details, detailRows));
    dialog.setStandardButtons(box.buttons == Buttons::Ok ? QMessageBox::Ok
                                                         : QMessageBox::Ok | QMessageBox::Cancel);
    dialog.setDefaultButton(QMessageBox::Ok);
    return dialog.exec() == QMessageBox::Ok;
}

std::string QtDialogs::input(const InputBox& box) {
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(toSigns(box.title));
    dialog.setLabelText(toSigns(box.prompt));
    dialog.setTextValue({});
    if (auto* field = dialog.findChild<QLineEdit*>(); box.isNumber && field != nullptr)
        takeNumbers(*field);
    return dialog.exec() == QDialog::Accepted ? fromWindow(dialog.textValue()) : std::string();
}

std::optional<std::size_t> QtDialogs::choose(const ChoiceBox& box) {
    QStringList items;
    for (const std::string& item : box.items)
        items += toSigns(item);
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(toSigns(box.title));
    dialog.setLabelText(toSigns(box.prompt));
    dialog.setOption(QInputDialog::UseListViewForComboBoxItems);
    dialog.setComboBoxItems(items);
    dialog.setTextValue(items.value(static_cast<qsizetype>(box.chosen)));
    dialog.resize(560, 340);  // a name, a time and a sum without scrolling
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const qsizetype index = items.indexOf(dialog.textValue());
    return index < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(index));
}

FileChoice QtDialogs::openFile(const FileDialog& dialog) {
    return chooseFile(dialog, QFileDialog::AcceptOpen);
}

FileChoice QtDialogs::saveFile(const FileDialog& dialog) {
    return chooseFile(dialog, QFileDialog::AcceptSave);
}

// Made at the first use: looking for the desktop's printers takes time.
QPrinter& QtDialogs::printer() {
    if (!printer_) {
        setPointer(Pointer::Hourglass);
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer_->setPageMargins(QMarginsF(pageMargin, pageMargin, pageMargin, pageMargin),
                                 QPageLayout::Millimeter);
        setPointer(Pointer::Default);
    }
    return *printer_;
}

PageLayout QtDialogs::pageLayout() {
    return toPageLayout(printer().pageLayout());
}

std::unique_ptr<PrintJob> QtDialogs::print(const std::string& documentName) {
    const std::string name = documentName.empty() ? applicationTitle : documentName;
    // The dialog proposes a file of this name for a PDF.
    printer().setDocName(toSigns(name));
    if (printer().outputFormat() == QPrinter::PdfFormat)
        printer().setOutputFileName(QDir::current().filePath(toWindow(name + ".pdf")));
    QPrintDialog dialog(&printer(), QApplication::activeWindow());
    dialog.setOption(QPrintDialog::PrintPageRange, false);
    if (dialog.exec() != QDialog::Accepted)
        return nullptr;
    return beginPrintJob(printer(), name);
}

void QtDialogs::setPointer(Pointer pointer) {
    const bool hourglass = pointer == Pointer::Hourglass;
    if (hourglass == hourglass_)
        return;
    hourglass_ = hourglass;
    if (hourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

}  // namespace kestrel
