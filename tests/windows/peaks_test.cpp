// The list of peaks, worked by keys.
#include <gtest/gtest.h>

#include <limits>

#include <QClipboard>
#include <QTimer>

#include "nuclide_fixture.h"
#include "peaks/form14_peak_calibration.h"
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

class PeakCalibrationTest : public test::WindowTest {
  protected:
    PeakCalibrationTest() {
        module->database = test::nuclideDatabase();
        module->settings.marigoldDir = KESTREL_NUCLIDE_DATA;
        start();
        openSample("eu152-co60-cs137-1024.chn");
    }
    void calibrate(const std::function<void(Form14&)>& work) const {
        bool worked = false;
        QTimer::singleShot(0, qApp, [&] {
            auto* form = qobject_cast<Form14*>(QApplication::activeModalWidget());
            ASSERT_NE(form, nullptr);
            ASSERT_TRUE(QTest::qWaitForWindowActive(form));
            work(*form);
            worked = true;
            form->reject();
        });
        trigger("peakCalibration");
        EXPECT_TRUE(worked);
    }
    static QString cell(const Form14& form, int row, Form14::Column column) {
        return form.peakTable->item(row, column)->text();
    }
    static int rowAt(const Form14& form, double channel) {
        int row = 0;
        while (cell(form, row, Form14::Channel).toDouble() < channel)
            ++row;
        return row;
    }
    static int pointsIn(const Form14& form) {
        int points = 0;
        for (int row = 0; row < form.peakTable->rowCount(); ++row)
            points += cell(form, row, Form14::Energy).isEmpty() ? 0 : 1;
        return points;
    }
    static void press(const Form14& form, Qt::Key which) { QTest::keyClick(form.peakTable, which); }
    // As it is typed, in the row that is current, and Enter.
    static void type(Form14& form, const char* energy) {
        press(form, static_cast<Qt::Key>(energy[0]));
        auto* editor = form.peakTable->findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        QTest::keyClicks(editor, energy + 1);
        QTest::keyClick(editor, Qt::Key_Return);
        QApplication::processEvents();
    }
};

TEST_F(PeakCalibrationTest, RecognisesTheSourceAndKeepsItsCalibrationForTheNextStart) {
    EXPECT_FALSE(form2->findChild<QAction*>("lastPeakCalibration")->isEnabled());
    calibrate([](Form14& form) {
        EXPECT_TRUE(form.recognition->text().startsWith("This fits Eu-152: "));
        EXPECT_FALSE(form.applyButton->isEnabled());
        QTest::keyClick(form.windowHandle(), Qt::Key_F, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pointsIn(form) == 10; }));
        form.applyButton->click();
    });
    const Calibration applied = module->spectrum.calCurrent;
    EXPECT_NEAR(energyAt(applied, 441.33), 661.66, 0.5) << "caesium is not one of the points";
    openSample("eu152-co60-cs137-4096.chn");
    EXPECT_EQ(module->spectrum.calCurrent, applied) << "also for the spectra opened from now on";
    form2->close();
    const auto next = std::make_unique<Module1>();
    startModule1(*next, folder.path());
    EXPECT_TRUE(next->calibrationChoice.useFileCalibration);
    Form2 restarted(*next, dialogs);
    ASSERT_TRUE(restarted.findChild<QAction*>("lastPeakCalibration")->isEnabled());
    restarted.findChild<QAction*>("lastPeakCalibration")->trigger();
    EXPECT_EQ(next->spectrum.calCurrent, applied);
}

TEST_F(PeakCalibrationTest, TakesTypedEnergiesAndThoseOfANuclide) {
    dialogs.fileAnswer = {.path = folder.file("kept.pcal"), .filterIndex = 1};
    calibrate([](Form14& form) {
        const int first = rowAt(form, 81);
        const int last = rowAt(form, 938);
        form.peakTable->setCurrentCell(first, 0);
        type(form, "121,78");
        EXPECT_EQ(cell(form, first, Form14::Energy), "121.78");
        EXPECT_EQ(form.summary->text(),
                  "A straight line needs 2 peaks of different channels; there are 1.");
        form.peakTable->setCurrentCell(last, 0);
        QTest::keyClicks(form.nuclideField, "eu152");
        QTest::keyClick(form.nuclideField, Qt::Key_Return);
        ASSERT_GT(form.lineGrid->model()->rowCount(), 10);
        int row = 1;
        while (!form.lineGrid->text(row, 1).startsWith("1408.0"))
            ++row;
        form.lineGrid->goTo(row, 1, 1);
        QTest::keyClick(form.lineGrid, Qt::Key_Return);
        EXPECT_EQ(cell(form, last, Form14::Residual), "0.000");
        form.matchButton->click();
        const int matched = pointsIn(form);
        EXPECT_GE(matched, 8);
        press(form, Qt::Key_Space);
        EXPECT_EQ(cell(form, last, Form14::Used), "no");
        EXPECT_NE(cell(form, last, Form14::Residual), "0.000");
        press(form, Qt::Key_Delete);
        EXPECT_EQ(pointsIn(form), matched - 1);
        QTest::keyClicks(form.curveChoice, "P");
        form.saveButton->click();
    });
    const std::string kept = folder.read("kept.pcal");
    EXPECT_TRUE(kept.starts_with("Kestrel peak calibration\ncurve parabola\n"));
    calibrate([&](Form14& form) {
        form.loadButton->click();
        EXPECT_TRUE(form.applyButton->isEnabled());
        const int points = pointsIn(form);
        folder.write("kept.pcal", kept + "x");
        form.loadButton->click();
        EXPECT_TRUE(dialogs.messages.back().text.ends_with("is no peak."));
        EXPECT_EQ(pointsIn(form), points) << "and all stays";
    });
}

}  // namespace
}  // namespace kestrel
