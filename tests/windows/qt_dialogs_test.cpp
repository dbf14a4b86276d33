#include "base/qt/qt_dialogs.h"

#include <gtest/gtest.h>

#include <functional>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "temp_folder.h"

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

}  // namespace
}  // namespace kestrel
