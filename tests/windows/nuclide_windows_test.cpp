#include <gmock/gmock.h>

#include <map>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTimer>

#include "app/form6_directory.h"
#include "nuclide_fixture.h"
#include "spectrum/energy_calibration.h"
#include "window_fixture.h"

namespace kestrel {
namespace {

class NuclideWindowsTest : public test::WindowTest {
  protected:
    NuclideWindowsTest() {
        module->database = test::nuclideDatabase();
        module->settings.marigoldDir = KESTREL_NUCLIDE_DATA;
        start();
        returnToPlot();
        openSample();
    }
    static void show(QWidget& window) {
        window.show();
        window.activateWindow();
        settle();
    }
    static void settle() {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }
    Form9* energyList(double energy) {
        module->view.cursorCh = energyToChannel(module->spectrum.calCurrent, energy);
        key(Qt::Key_E);
        settle();
        return form2->findChild<Form9*>();
    }
    Form12* nuclideData() { return form2->findChild<Form12*>(); }
    void returnToPlot() {
        form2->activateWindow();
        settle();
    }
    int markedChannels() const {
        return static_cast<int>(std::ranges::count_if(module->channelColour,
                                                      [](Colour colour) { return colour != 0; }));
    }
    static int rowOf(const Grid& grid, const QString& nuclide, const QString& energy) {
        for (int row = 1; row <= grid.model()->rowCount(); ++row) {
            if (grid.text(row, 3) == nuclide && grid.text(row, 1) == energy)
                return row;
        }
        return 0;
    }
};

TEST_F(NuclideWindowsTest, SortFindAndCopyTheLinesOfTheList) {
    Form9* form9 = energyList(661.7);
    Grid& grid = *form9->lineGrid;
    QAbstractItemModelTester tester(grid.model());
    const auto column = [&](int number) {
        QStringList texts;
        for (int row = 0; row < grid.model()->rowCount(); ++row)
            texts += grid.model()->index(row, number - 1).data().toString();
        return texts;
    };
    const auto click = [&](int number) {
        QHeaderView& header = *grid.horizontalHeader();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          QPoint(header.sectionViewportPosition(number - 1) + 9, 9));
        return column(number);
    };
    const QStringList described = column(4);
    ASSERT_GT(described.size(), 3);
    const int given = rowOf(grid, "Cs-137g", "661.66");
    grid.goTo(given, 3, 1);
    const QStringList upwards = click(4);
    std::map<char, double> units = {{'S', 1}, {'M', 60}, {'H', 3600}, {'D', 86400}, {'Y', 3e7}};
    const auto seconds = [&](const QString& text) {
        return text.section(' ', 0, 0).toDouble() * units[text.section(' ', 1)[0].toLatin1()];
    };
    EXPECT_TRUE(std::ranges::is_sorted(upwards, {}, seconds)) << upwards.join('|').toStdString();
    EXPECT_NE(upwards, described);
    EXPECT_EQ(grid.currentRow(), given) << "the current row moves along";
    EXPECT_EQ(grid.selectionModel()->currentIndex().siblingAtColumn(2).data(), "Cs-137g");
    const QStringList downwards = click(4);
    EXPECT_TRUE(std::ranges::is_sorted(downwards, std::greater(), seconds));
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().contains("Cs-137g"));
    grid.actions()[1]->trigger();
    EXPECT_EQ(QApplication::clipboard()->text().count('\n'), described.size());
    EXPECT_EQ(click(4), described);
    const QList<QAction*> ways = grid.actions()[2]->menu()->actions();
    ways[2]->trigger();
    EXPECT_TRUE(std::ranges::is_sorted(column(3)));

    grid.goTo(1, 1, 1);
    QTest::keyClicks(form9->findField, "cs137");
    EXPECT_EQ(grid.text(grid.currentRow(), 3), "Cs-137g");
    QTest::keyClick(form9->findField, Qt::Key_Return);
    EXPECT_EQ(grid.text(grid.currentRow(), 3), "Cs-137g") << "from the top again";
}

TEST_F(NuclideWindowsTest, ListTheKindsOfLinesThatAreChosen) {
    trigger("win_nd");
    Form12& form12 = *nuclideData();
    form12.findField->setText("cs137");
    QTest::keyClick(form12.findField, Qt::Key_Return);
    EXPECT_EQ(form12.summary->item(0)->text(), "Nuclide    : Cs-137g");
    const std::size_t marked = module->nuclide.rows.size();
    struct Choice {
        const char* caption;
        const char* definitions;  // all that are listed, without their numbers and decay modes
    };
    for (const Choice& c :
         {Choice{"Gamma", "G G"}, {"X-ray", "G G G G G"}, {"Beta", "B- B- B- B-"}}) {
        form12.kindChoice->setCurrentText(c.caption);
        QStringList listed;
        for (int row = 1; row <= form12.lineGrid->model()->rowCount(); ++row)
            listed += form12.lineGrid->text(row, 3).section(QRegularExpression("[ 0-9]"), 0, 0);
        EXPECT_EQ(listed.join(' ').toStdString(), c.definitions) << c.caption;
    }
    EXPECT_EQ(module->nuclide.rows.size(), marked) << "the marks on the plot stay";
}

TEST_F(NuclideWindowsTest, LeadFromAPeakToItsNuclideAndItsMarks) {
    Form9* form9 = energyList(661.7);
    ASSERT_NE(form9, nullptr);
    EXPECT_EQ(form9->windowTitle(), "Kestrel - EnergyList");
    EXPECT_EQ(form9->databaseDate->text().left(12), "DB Update : ");
    Grid& grid = *form9->lineGrid;
    EXPECT_EQ(grid.currentRow(), qRound((grid.model()->rowCount() + 1) / 2.0 - 0.01));
    const int row = rowOf(grid, "Cs-137g", "661.66");
    ASSERT_GT(row, 0);
    const QModelIndex cell = grid.model()->index(row - 1, 0);
    EXPECT_EQ(cell.data(Qt::BackgroundRole).value<QColor>(), QColor(0, 255, 0));
    EXPECT_EQ(cell.data(Qt::ForegroundRole).value<QColor>(), QColor(0, 0, 0));
    grid.scrollTo(cell);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    settle();
    ASSERT_NE(nuclideData(), nullptr);
    EXPECT_EQ(module->selectedNuclide, "Cs-137g");
    EXPECT_EQ(nuclideData()->summary->item(0)->text(), "Nuclide    : Cs-137g");
    returnToPlot();
    const std::int16_t peak = energyToChannel(module->spectrum.calCurrent, 661.66);
    EXPECT_EQ(module->channelColour[peak], standardPalette[12]);
    EXPECT_EQ(module->channelColour[peak - 8], 0);
    key(Qt::Key_B);
    EXPECT_EQ(markedChannels(), 0);
    key(Qt::Key_B);
    EXPECT_GT(markedChannels(), 0);
    show(*nuclideData());
    nuclideData()->close();
    returnToPlot();
    EXPECT_EQ(markedChannels(), 0);
}

TEST_F(NuclideWindowsTest, MarkUpToFiveNuclidesAtOnceOverThePicture) {
    trigger("win_nd");
    Form12& form12 = *nuclideData();
    QAction& mark = *form12.findChild<QAction*>("mark");
    mark.trigger();
    EXPECT_TRUE(module->markedNuclides.empty()) << "none is shown";
    for (const char* name : {"cs137", "co60", "eu152", "k40", "ba133", "na22"}) {
        form12.findField->setText(name);
        QTest::keyClick(form12.findField, Qt::Key_Return);
        mark.trigger();
    }
    ASSERT_EQ(module->markedNuclides.size(), mostMarkedNuclides);
    EXPECT_EQ(dialogs.messages.size(), 1U) << "for the sixth";
    EXPECT_EQ(module->markedNuclides[1].name, "Co-60");
    form12.close();
    returnToPlot();
    const std::int16_t peak = energyToChannel(module->spectrum.calCurrent, 661.66);
    EXPECT_EQ(module->channelColour[peak], module->marks.legend[0].colour);
    const QImage drawn = form2->picture().copy();
    const QImage seen = form2->plotArea->grab().toImage();
    trigger("markLabels");
    EXPECT_NE(form2->plotArea->grab().toImage(), seen);
    EXPECT_EQ(form2->picture(), drawn) << "the labels lie over it";
    QMenu& list = *form2->findChild<QAction*>("markedNuclides")->menu();
    for (std::size_t left = mostMarkedNuclides; left-- > 0;) {
        emit list.aboutToShow();
        list.actions()[0]->trigger();
        EXPECT_EQ(module->markedNuclides.size(), left);
    }
    EXPECT_EQ(markedChannels(), 0);
}

TEST_F(NuclideWindowsTest, AreWorkedByKeys) {
    Form9* form9 = energyList(1332.5);
    Grid& grid = *form9->lineGrid;
    const int row = rowOf(grid, "Co- 60g", "1332.49");
    ASSERT_GT(row, 0);
    for (const Qt::Key key : {Qt::Key_N, Qt::Key_F11, Qt::Key_Return}) {
        module->selectedNuclide.clear();
        grid.goTo(row, 3, 1);
        QTest::keyClick(&grid, key);
        settle();
        EXPECT_EQ(module->selectedNuclide, "Co- 60g");
    }
    QTest::keyClick(&grid, Qt::Key_Down);
    EXPECT_EQ(grid.currentRow(), row + 1);
    ASSERT_NE(nuclideData(), nullptr);
    for (const Qt::Key key : {Qt::Key_X, Qt::Key_F10}) {
        nuclideData()->activateWindow();
        QTest::keyClick(nuclideData()->lineGrid, key);
        settle();
        EXPECT_TRUE(form2->isActiveWindow());
    }
    QTest::keyClick(nuclideData()->lineGrid, Qt::Key_N);
    settle();
    EXPECT_TRUE(form9->isActiveWindow());
}

TEST_F(NuclideWindowsTest, CopySelectedRowsAndKeepColumnWidths) {
    Grid& grid = *energyList(661.7)->lineGrid;
    const QAbstractItemModelTester tester(grid.model());
    const int row = rowOf(grid, "Cs-137g", "661.66");
    grid.setColumnWidth(2, 333);
    grid.goTo(row, 3, 1);
    QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith("661.66\t84.99\tCs-137g\t") ||
                lines[0].startsWith("661.66\t85.1"))
        << lines[0].toStdString();
    EXPECT_EQ(lines[0].count('\t'), 6);
    energyList(1332.5);
    EXPECT_EQ(grid.columnWidth(2), 333);
}

TEST_F(NuclideWindowsTest, ApplyTheFiltersWhenTheListIsShownAgain) {
    Form9* form9 = energyList(661.7);
    const int all = form9->lineGrid->model()->rowCount();
    form9->tabs->setCurrentIndex(1);
    form9->gateFields[0]->setText("10");
    form9->decayOptions[1]->setChecked(true);
    EXPECT_EQ(form9->lineGrid->model()->rowCount(), all);
    form9->tabs->setCurrentIndex(0);
    EXPECT_LT(form9->lineGrid->model()->rowCount(), all);
    EXPECT_GT(rowOf(*form9->lineGrid, "Cs-137g", "661.66"), 0);
    form9->gateFields[9]->setText("");
    form9->tabs->setCurrentIndex(1);
    form9->tabs->setCurrentIndex(0);
    EXPECT_EQ(form9->lineGrid->text(1, 1), "No Data");
    QTest::mouseClick(form9->lineGrid->viewport(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(nuclideData(), nullptr);
    form9->resize(800, 600);
    form9->close();
    settle();
    EXPECT_EQ(module->settings.windowPlacement[9].width, 12000);
    EXPECT_FALSE(module->database.isOpen());
    form9 = energyList(661.7);
    EXPECT_EQ(form9->gateFields[0]->text(), "0.1");
    EXPECT_EQ(form9->lineGrid->model()->rowCount(), all);
    EXPECT_EQ(form9->size(), QSize(800, 600));
}

TEST_F(NuclideWindowsTest, AskForNamesEachByItsOwnRule) {
    dialogs.inputAnswer = "eu-152m1";
    key(Qt::Key_N);
    settle();
    EXPECT_EQ(module->selectedNuclide, "Eu-152m");
    ASSERT_NE(nuclideData(), nullptr);
    const auto ask = [this] { nuclideData()->findChild<QAction*>("nuc1")->trigger(); };
    ask();
    EXPECT_EQ(module->selectedNuclide, "Eu-152m1");
    EXPECT_GT(nuclideData()->lineGrid->model()->rowCount(), 2);
    dialogs.inputAnswer = "Europium";
    ask();
    key(Qt::Key_N);
    EXPECT_EQ(module->selectedNuclide, "Eu-152m1");
    EXPECT_EQ(dialogs.messages.size(), 2U);
    dialogs.inputAnswer = "Xx-1";
    ask();
    EXPECT_EQ(dialogs.messages.back().text, "This nucl. does not exist on DB!");
    EXPECT_TRUE(nuclideData()->lineGrid->isVisible());
    EXPECT_EQ(nuclideData()->lineGrid->model()->rowCount(), 2);
}

TEST_F(NuclideWindowsTest, ReadAnotherDatabaseFromTheNextLookUpOn) {
    const Grid& grid = *energyList(661.7)->lineGrid;
    EXPECT_GT(grid.model()->rowCount(), 100);
    QTimer::singleShot(0, qApp, [] {
        auto* chooser = qobject_cast<Form6*>(QApplication::activeModalWidget());
        ASSERT_NE(chooser, nullptr);
        chooser->chosenFolder->setText(QStringLiteral(KESTREL_TEST_DATA "/jet"));
        QTest::keyClick(chooser->chosenFolder, Qt::Key_Return);
    });
    form2->findChild<QAction*>(QStringLiteral("o11(1)"))->trigger();
    EXPECT_EQ(module->settings.marigoldDir, KESTREL_TEST_DATA "/jet");
    returnToPlot();
    energyList(662.2);
    EXPECT_GT(rowOf(grid, "Cs-137g", "661.66"), 0);
    EXPECT_LT(grid.model()->rowCount(), 10) << "the small file has few lines";
}

TEST_F(NuclideWindowsTest, StayUsableWithoutADatabase) {
    module->settings.marigoldDir = folder.path();
    Form9* form9 = energyList(661.7);
    settle();
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].title, "ERROR: NuclDB");
    EXPECT_EQ(form9->lineGrid->model()->rowCount(), 0);
    module->settings.marigoldDir = KESTREL_NUCLIDE_DATA;
    returnToPlot();
    energyList(661.7);
    EXPECT_GT(rowOf(*form9->lineGrid, "Cs-137g", "661.66"), 0);
    EXPECT_EQ(dialogs.messages.size(), 1U);
}

}  // namespace
}  // namespace kestrel
