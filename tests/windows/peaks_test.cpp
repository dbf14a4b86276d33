// The list of peaks, worked by keys.
#include <gtest/gtest.h>

#include <limits>

#include <QClipboard>

#include "nuclide_fixture.h"
#include "window_fixture.h"

namespace kestrel {
namespace {

class PeaksWindowTest : public test::WindowTest {
  protected:
    PeaksWindowTest() {
        module->database = test::nuclideDatabase();
        module->settings.marigoldDir = KESTREL_NUCLIDE_DATA;
        start();
        openSample();
        QTest::keyClick(form2.get(), Qt::Key_F8);
        settle();
    }
    static void settle() {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }
    PeaksWindow* peaks() const { return form2->findChild<PeaksWindow*>(); }
    Grid& grid() const { return *peaks()->peakGrid; }
    int rows() const { return grid().model()->rowCount(); }
    // Of the peak whose energy begins so; 0 for none.
    int rowOf(const char* energy) const {
        for (int row = 1; row <= rows(); ++row) {
            if (grid().text(row, 2).startsWith(QLatin1String(energy)))
                return row;
        }
        return 0;
    }
};

TEST_F(PeaksWindowTest, ListsThePeaksAndMovesTheCursorToThem) {
    ASSERT_NE(peaks(), nullptr);
    EXPECT_GT(rows(), 30);
    const int row = rowOf("661.6");
    ASSERT_GT(row, 0);
    grid().goTo(row, 1, 1);
    EXPECT_TRUE(peaks()->details->text().contains("detection limit"));
    QTest::keyClick(&grid(), Qt::Key_Return);
    EXPECT_EQ(module->view.cursorCh, qRound(grid().text(row, 1).toDouble()));
    QTest::keyClick(&grid(), Qt::Key_X);
    settle();
    EXPECT_TRUE(form2->isActiveWindow());
}

TEST_F(PeaksWindowTest, TellsTheCandidatesOfAPeakAndWhy) {
    Grid& candidates = *peaks()->candidateGrid;
    Grid& lines = *peaks()->lineGrid;
    EXPECT_EQ(candidates.text(1, 1), "Eu-152g");
    const int row = rowOf("1332.");
    EXPECT_EQ(grid().text(row, 10), "Co- 60g");
    grid().goTo(row, 1, 1);
    EXPECT_EQ(candidates.text(candidates.currentRow(), 1), "Co- 60g");
    EXPECT_EQ(lines.model()->rowCount(), 2);
    lines.goTo(1, 1, 1);
    QTest::keyClick(&lines, Qt::Key_Return);
    EXPECT_NEAR(module->view.cursorCh, grid().text(rowOf("1173."), 1).toDouble(), 1);
    QTest::keyClick(&candidates, Qt::Key_N);
    settle();
    EXPECT_EQ(module->selectedNuclide, "Co- 60g");
    EXPECT_EQ(form2->findChild<Form12*>()->summary->item(0)->text(), "Nuclide    : Co- 60g");

    form2->activateWindow();
    key(Qt::Key_E);
    settle();
    form2->findChild<Form9*>()->gateFields[2]->setText("2e8");
    peaks()->activateWindow();
    settle();
    EXPECT_EQ(grid().text(row, 10), "") << "the Gate hides what lives for 5 years";
    EXPECT_EQ(candidates.text(1, 1), "Eu-152g");
    form2->findChild<Form9*>()->close();
    module->settings.marigoldDir = folder.file("gone");
    settle();
    peaks()->follow();
    settle();
    EXPECT_EQ(candidates.model()->rowCount(), 0);
    EXPECT_GT(rows(), 30);
    EXPECT_TRUE(peaks()->remark->text().contains("No candidates: ")) << "and no message";
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(PeaksWindowTest, FollowsSpectrumAndCalibration) {
    const int before = rows();
    module->spectrum.chnTrailer.resolution[0] = std::numeric_limits<float>::quiet_NaN();
    peaks()->follow();
    settle();
    grid().goTo(5, 1, 1);
    form2->activateWindow();
    key(Qt::Key_B);
    settle();
    EXPECT_EQ(grid().currentRow(), 5) << "a drawing alone changes nothing";
    module->spectrum.calCurrent.a += 100;
    key(Qt::Key_B);
    settle();
    EXPECT_GT(rowOf("761.6"), 0);
    open(KESTREL_SAMPLES "/environmental-8192.chn");
    settle();
    EXPECT_NE(rows(), before);
    EXPECT_GT(rowOf("1460.8"), 0);
    open(KESTREL_SAMPLES "/eu152-co60-cs137-1024.chn");
    settle();
    EXPECT_GT(rows(), 0);
    EXPECT_EQ(grid().text(1, 2), "");
    EXPECT_TRUE(peaks()->remark->text().contains("Not calibrated"));
    open(KESTREL_SAMPLES "/empty-4096.chn");
    settle();
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(peaks()->remark->text(), "No peaks are marked.");
}

// The peak that is looked at stays, also where another range scales the second anew.
TEST_F(PeaksWindowTest, MeasuresASecondSpectrumInTheSameRegions) {
    EXPECT_EQ(grid().model()->columnCount(), 10);
    dialogs.fileAnswer = {.path = KESTREL_SAMPLES "/environmental-8192.chn"};
    trigger("openSecond");
    settle();
    ASSERT_EQ(grid().model()->columnCount(), 12);
    const int row = rowOf("661.6");
    grid().goTo(row, 1, 1);
    const QString byTime = grid().text(row, 11);
    module->comparison.scale = CompareScale::ShownCounts;
    form2->activateWindow();
    key(Qt::Key_PageUp);
    settle();
    EXPECT_NE(grid().text(row, 11), "");
    EXPECT_NE(grid().text(row, 11), byTime);
    EXPECT_EQ(grid().currentRow(), row);
    trigger("removeSecond");
    settle();
    EXPECT_EQ(grid().model()->columnCount(), 10);
    EXPECT_EQ(grid().currentRow(), row);
}

TEST_F(PeaksWindowTest, SavesCopiesAndKeepsItsPlace) {
    dialogs.fileAnswer = {.path = folder.file("peaks.csv"), .filterIndex = 1};
    peaks()->saveButton->click();
    EXPECT_EQ(QString::fromStdString(folder.read("peaks.csv")).count("\r\n"), rows() + 1);
    grid().goTo(3, 1, 1);
    QTest::keyClick(&grid(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith(grid().text(3, 1) + '\t'));
    peaks()->resize(777, 444);
    QTest::keyClick(peaks(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(peaks(), nullptr);
    trigger("peaks");
    EXPECT_EQ(peaks()->size(), QSize(777, 444));
}

}  // namespace
}  // namespace kestrel
