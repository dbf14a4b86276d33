#include "ui/qt_dialogs.h"

#include <gtest/gtest.h>

#include <functional>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include "temp_folder.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

// Does something with the dialog that opens next.
template <typename Dialog>
void whenOpen(std::function<void(Dialog&)> action) {
    QTimer::singleShot(
        50, [action] { action(*qobject_cast<Dialog*>(QApplication::activeModalWidget())); });
}

FileDialog twoFilters(const std::string& folder) {
    return {.title = "Open",
            .filters = {{"ORTEC, SEIKO (chn)", "*.chn"},
                        {"NAIG E-560  RS232C (txt)", "*.txt"},
                        {"All File", "*.*"}},
            .filterIndex = 2,
            .folder = folder};
}

TEST(QtFileDialog, ListsFilesWhoseNamesAreNotUtf8AndKeepsTheirBytes) {
    const test::TempFolder folder;
    const std::string path = folder.write("spectr\xE9.txt", "");
    folder.write("caf\xE9.chn", "");
    folder.write("plain.txt", "");
    QtDialogs dialogs;
    QStringList listed;
    whenOpen<QFileDialog>([&](QFileDialog& dialog) {
        auto* names = dialog.findChild<QListWidget*>("oldNames");
        for (int i = 0; i < names->count(); ++i)
            listed += names->item(i)->text();
        names->setCurrentRow(0);
        QTest::keyClick(names, Qt::Key_Return);
    });
    EXPECT_EQ(dialogs.openFile(twoFilters(folder.path())).path, path);
    EXPECT_EQ(listed, QStringList(QStringLiteral("spectr\u00E9.txt")));
}

TEST(QtFileDialog, ShowsFiltersToTheBlankAndReportsTheOneLeftSelected) {
    const test::TempFolder folder;
    QtDialogs dialogs;
    for (const int chosen : {0, 1, 2}) {
        QString shown;
        whenOpen<QFileDialog>([&](QFileDialog& dialog) {
            auto* list = dialog.findChild<QComboBox*>("fileTypeCombo");
            EXPECT_EQ(list->currentIndex(), 1);
            shown = list->itemText(1);
            list->setCurrentIndex(chosen);
            emit list->activated(chosen);
            dialog.reject();
        });
        const FileChoice choice = dialogs.openFile(twoFilters(folder.path()));
        EXPECT_EQ(shown, "NAIG E-560  RS232C (txt)");
        EXPECT_EQ(choice.filterIndex, chosen + 1);
        EXPECT_EQ(choice.path, "");
    }
}

TEST(QtFileDialog, AddsAnEndingThatIsNotTyped) {
    const test::TempFolder folder;
    QtDialogs dialogs;
    for (const auto& [typed, saved] : {std::pair{"out", "out.csv"}, {"out.txt", "out.txt"}}) {
        whenOpen<QFileDialog>([typed = typed](QFileDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText(QLatin1String(typed));
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        });
        const FileDialog request{
            .title = "Save as CSV", .filters = {{"csv file(s)", "*.csv"}}, .folder = folder.path()};
        EXPECT_EQ(dialogs.saveFile(request).path, folder.file(saved));
    }
}

TEST(QtInputBox, TakesACommaInANumberForAPoint) {
    QtDialogs dialogs;
    for (const auto& [isNumber, answer] : {std::pair{true, "511.9"}, {false, "511,9"}}) {
        whenOpen<QInputDialog>([](QInputDialog& box) {
            QTest::keyClicks(box.findChild<QLineEdit*>(), "511,9");
            box.accept();
        });
        EXPECT_EQ(dialogs.input({.prompt = "p", .title = "t", .isNumber = isNumber}), answer);
    }
}

TEST(QtMessageBox, AnswersWithTheButtonPressed) {
    QtDialogs dialogs;
    for (const bool ok : {true, false}) {
        whenOpen<QMessageBox>([&](QMessageBox& box) {
            EXPECT_EQ(box.text(), "a\nb");
            box.button(ok ? QMessageBox::Ok : QMessageBox::Cancel)->click();
        });
        EXPECT_EQ(dialogs.message({.text = "a\nb", .buttons = Buttons::OkCancel}), ok);
    }
}

// What a file may be called: a headline with a link, and a name that reads backwards.
TEST(QtMessageBox, ShowsTextsFromOutsideAsTheyAre) {
    const std::string name = "<h1><a href='http://a/'>x</a></h1>\x1B \xE2\x80\xAEgpj.exe";
    const QString shown = QStringLiteral("<h1><a href='http://a/'>x</a></h1>␛ <U+202E>gpj.exe");
    QtDialogs dialogs;
    const auto isPlain = [](QWidget& window) {
        for (const QLabel* label : window.findChildren<QLabel*>())
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
    };
    whenOpen<QMessageBox>([&](QMessageBox& box) {
        EXPECT_EQ(box.text(), shown);
        EXPECT_EQ(box.informativeText(), shown);
        isPlain(box);
        box.reject();
    });
    dialogs.message({.text = name, .title = name, .details = name});
    whenOpen<QInputDialog>([&](QInputDialog& box) {
        EXPECT_EQ(box.labelText(), shown);
        isPlain(box);
        box.reject();
    });
    dialogs.input({.prompt = name, .title = name});
    whenOpen<QMessageBox>([&](QMessageBox& box) {
        EXPECT_LE(box.width(), box.screen()->availableSize().width());
        EXPECT_LT(box.height(), 600);
        box.reject();
    });
    std::string words;
    for (int i = 0; i < 3000; ++i)
        words += i % 50 == 0 ? "\n" : "word ";
    dialogs.message({.text = words, .details = "/" + std::string(5000, 'w') + words});
    QToolTip::showText({}, toWindow(name));
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        const auto* tip = qobject_cast<const QLabel*>(window);
        EXPECT_TRUE(tip == nullptr || tip->textFormat() == Qt::PlainText);
    }
    QToolTip::hideText();
}

}  // namespace
}  // namespace kestrel
