// Calibrating and measuring through the real windows.
#include <algorithm>
#include <functional>
#include <set>

#include <QTimer>

#include "analysis/form11_results.h"
#include "analysis/form5_energy_calibration.h"
#include "analysis/net_area.h"
#include "app/form6_directory.h"
#include "chn_bytes.h"
#include "window_fixture.h"

namespace kestrel {
namespace {

class Analysis : public test::WindowTest {
  protected:
    Analysis() {
        start();
        openSample();
    }

    void restart() {
        form2->close();
        form2.reset();
        module = std::make_unique<Module1>();
        startModule1(*module, folder.path());
        start();
    }
    // Goes to a channel by the input box and enters it by the right button.
    void enter(int channel) {
        dialogs.inputAnswer = std::to_string(channel);
        key(Qt::Key_A);
        rightClick();
    }
    void rightClick() const { QTest::mousePress(form2->plotArea, Qt::RightButton, {}, {300, 100}); }
    void measureAt(int centre) {
        for (const int offset : {-30, -14, -10, 10, 14, 30})
            enter(centre + offset);
    }
    Form7& form7() const { return *form2->findChild<Form7*>(); }
    std::string status() const { return form2->statusLine->text().toStdString(); }

    // Runs `action` with a modal window as soon as it is open.
    template <typename Form>
    void with(std::function<void(Form&)> action) {
        QTimer::singleShot(0, qApp, [this, action] {
            auto* form = qobject_cast<Form*>(QApplication::activeModalWidget());
            ++modal;
            ASSERT_NE(form, nullptr);
            action(*form);
            if (form->isVisible())
                form->reject();
        });
    }
    static void type(QLineEdit* field, const char* text) {
        field->selectAll();
        QTest::keyClicks(field, QString::fromLatin1(text));
    }

    int modal = 0;
};

constexpr int lines[] = {244, 689, 1325, 1558, 2665};  // channels of strong lines of the sample

TEST_F(Analysis, GoesFromACalibrationToAFileOfFivePeaksAndOnToTheNextSpectrum) {
    with<Form5>([](Form5& form) {
        form.fileCalibration->click();
        type(form.lowChannel, "1325");
        type(form.lowEnergy, "661.66");
        type(form.highChannel, "2665");
        type(form.highEnergy, "1332.5");
        QTest::mouseClick(form.okButton, Qt::LeftButton);
    });
    dialogs.inputAnswer = "1325";
    key(Qt::Key_A);
    key(Qt::Key_I);
    EXPECT_EQ(status().substr(4, 17), " 1325( 661.7keV) ");  // at once

    trigger("pkarea");
    for (const int line : lines) {
        measureAt(line);
        EXPECT_GT(module->settings.peakSets[module->peakArea.currentSet].net, 1000);
        QTest::mouseClick(form7().nextButton, Qt::LeftButton);
    }
    EXPECT_EQ(module->settings.peakSetCount, 5);
    module->settings.saveAsDir = "/gone for good";
    with<Form11>([this](Form11& form) {
        ASSERT_EQ(form.resultLines->count(), 5);
        EXPECT_EQ(form.resultLines->item(2)->text().left(20), "   3  1325.0   661.7");
        with<Form6>([this](Form6& chooser) {
            EXPECT_EQ(chooser.windowTitle(), "Output file Dir");
            EXPECT_EQ(chooser.prompt->text(), "Save as...eu152-co60-cs137-4096.pkm");
            EXPECT_EQ(chooser.chosenFolder->text(), "/gone for good");
            chooser.chosenFolder->setText(QString::fromStdString(folder.path()));
            QTest::keyClick(chooser.chosenFolder, Qt::Key_Return);
        });
        QTest::mouseClick(form.saveButton, Qt::LeftButton);
        EXPECT_FALSE(form.isVisible());
    });
    trigger("o1");
    EXPECT_EQ(modal, 3);
    const std::string file = folder.read("eu152-co60-cs137-4096.pkm");
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 8 + 5 + 1);

    // The sixth set is empty: its own window stays, the program does not.
    EXPECT_FALSE(form7().close());
    EXPECT_EQ(dialogs.messages.back().text, "Ch Error\rBKG1(low) >= BKG1(high)");
    const PeakAreaTable measured = module->settings.peakSets;
    restart();
    EXPECT_EQ(module->settings.saveAsDir, folder.path());

    // The same regions in a spectrum of twice the counts.
    open(KESTREL_SAMPLES "/eu152-co60-cs137-4096.chn");
    trigger("pkarea");
    for (int i = 0; i < 5; ++i)  // as far as the new set
        QTest::mouseClick(form7().nextButton, Qt::LeftButton);
    test::ChnBytes twice{.channelCount = 4096, .counts = {}};
    for (int i = 0; i < 4096; ++i)
        twice.counts.push_back(2 * module->spectrum.counts[i]);
    open(folder.write("twice.chn", twice.bytes() + std::string(64, ' ')));
    ASSERT_EQ(module->settings.peakSetCount, 5);
    EXPECT_TRUE(form7().isVisible());
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(module->settings.peakSets[i].pkLow, lines[i] - 10);
        EXPECT_NEAR(double{module->settings.peakSets[i].net}, 2 * double{measured[i].net}, 1);
        if (i < 4)
            QTest::mouseClick(form7().nextButton, Qt::LeftButton);
    }
}

TEST_F(Analysis, CalibratesFromFieldToFieldByEnter) {
    with<Form5>([this](Form5& form) {
        EXPECT_TRUE(form.fileCalibration->isChecked());
        EXPECT_EQ(form.lowChannel->palette().color(QPalette::Base), QColor(128, 128, 128));
        form.fileCalibration->click();
        EXPECT_EQ(form.highEnergy->palette().color(QPalette::Base), QColor(192, 192, 192));
        for (QLineEdit* field :
             {form.lowChannel, form.lowEnergy, form.highChannel, form.highEnergy}) {
            EXPECT_EQ(form.focusWidget(), field);
            QTest::keyClicks(field, "7");
            QTest::keyClick(field, Qt::Key_Return);
        }
        EXPECT_EQ(form.focusWidget(), form.okButton);
        EXPECT_TRUE(dialogs.messages.empty());  // the key that moves there does not press
        QTest::keyClick(form.okButton, Qt::Key_Return);
        EXPECT_EQ(dialogs.messages.back().text, "Energy Error\rEnergy(low) >= Energy(high)");
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(form.lowChannel->text(), "7");
        form.resize(500, 300);
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    trigger("o11(0)");
    EXPECT_EQ(modal, 1);
    // The check box counts at once, whatever button ends the dialog.
    EXPECT_FALSE(module->calibrationChoice.useFileCalibration);
    EXPECT_EQ(module->spectrum.calCurrent, module->spectrum.calFromFile);
    EXPECT_EQ(module->settings.windowPlacement[5].width, 500 * 15);
    with<Form5>([](Form5& form) {
        EXPECT_EQ(form.lowChannel->text(), "");
        EXPECT_EQ(form.width(), 500);
    });
    trigger("o11(0)");
}

TEST_F(Analysis, JumpsToAnEnergyAndStaysOnAFault) {
    dialogs.inputAnswer = "661.66";
    trigger("jump_engy");
    EXPECT_EQ(module->view.cursorCh, 1325);
    dialogs.inputAnswer = "99999";
    key(Qt::Key_A);
    EXPECT_EQ(dialogs.messages.back().text, "Run-time error '6':\n\nOverflow");
    EXPECT_EQ(module->view.cursorCh, 1325);
    dialogs.inputAnswer = "20000";
    trigger("jump_ch");
    EXPECT_EQ(module->view.cursorCh, 4096);
    dialogs.inputAnswer = "-5";
    trigger("jump_ch");
    EXPECT_EQ(module->view.cursorCh, 0);
}

TEST_F(Analysis, EntersTheCursorsChannelNotTheOneUnderTheMouse) {
    trigger("pkarea");
    EXPECT_TRUE(form2->plotArea->hasFocus());
    dialogs.inputAnswer = "1234";
    key(Qt::Key_A);
    const auto resultColour = [this] { return form7().netArea->palette().color(QPalette::Text); };
    const QColor measured = resultColour();
    rightClick();
    EXPECT_NE(resultColour(), measured) << "results of other bounds are grey";
    EXPECT_EQ(form7().lowBackgroundFrom->text(), " 1234");
    EXPECT_EQ(module->view.cursorCh, 1234);
    // A field that is clicked into takes the next channel.
    form7().activateWindow();
    QApplication::processEvents();
    form7().highBackgroundFrom->setFocus();
    rightClick();
    EXPECT_EQ(form7().highBackgroundFrom->text(), " 1234");
    EXPECT_EQ(form7().lowBackgroundTo->text(), "   0");
    form7().highBackgroundFrom->clear();
    for (QLineEdit* field : {form7().lowBackgroundFrom, form7().highBackgroundFrom})
        type(field, "0");
    EXPECT_TRUE(form7().close());
    rightClick();
    EXPECT_NE(module->view.cursorCh, 1234);
}

TEST_F(Analysis, MarksTheRegionsWhileTheDialogIsOpen) {
    const auto greenDots = [this] {
        const QImage& picture = form2->picture();
        int dots = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                dots += picture.pixel(x, y) == 0xFF00FF00 ? 1 : 0;
        }
        return dots;
    };
    trigger("pkarea");
    EXPECT_LT(greenDots(), 20);  // empty bounds stand for channel 1
    measureAt(1325);
    key(Qt::Key_PageUp);
    EXPECT_GT(greenDots(), 20);
    form7().close();
    EXPECT_EQ(greenDots(), 0);
    EXPECT_FALSE(module->peakArea.fields.bounds.shown);
    EXPECT_GT(module->settings.windowPlacement[7].width, 1000);
}

TEST_F(Analysis, MeasuresAllPeaksAndBringsThemBackFromTheListAndFromEachStep) {
    Settings& settings = module->settings;
    settings.saveAsDir = folder.path();
    trigger("pkarea");
    std::multiset<QString> letters{"Alt+O"};  // of the menu
    for (const QLabel* caption : form7().findChildren<QLabel*>())
        letters.insert(QKeySequence::mnemonic(caption->text()).toString());
    for (const QPushButton* button : form7().findChildren<QPushButton*>())
        letters.insert(QKeySequence::mnemonic(button->text()).toString());
    letters.erase("");
    EXPECT_EQ(letters.size(), std::set<QString>(letters.begin(), letters.end()).size());
    EXPECT_EQ(letters.size(), 12U);
    EXPECT_FALSE(form7().undoButton->isEnabled());

    form7().allPeaksButton->click();
    const int found = settings.peakSetCount;
    ASSERT_GE(found, 5);
    const PeakAreaTable measured = settings.peakSets;
    for (const int line : lines)
        EXPECT_EQ(1, std::ranges::count_if(
                         measured.span(0, found),
                         [line](const auto& set) { return set.pkLow < line && line < set.pkHigh; }))
            << line;
    EXPECT_TRUE(form7().centroid->text().contains(" ch, ")) << "and its energy";
    with<Form11>([this](Form11& form) {
        with<Form6>([](Form6& chooser) { QTest::mouseClick(chooser.okButton, Qt::LeftButton); });
        QTest::mouseClick(form.saveButton, Qt::LeftButton);
    });
    trigger("o1");
    EXPECT_EQ(modal, 2);

    // A typed bound, Auto and Clear are steps; looking at another set is none.
    type(form7().peakFrom, "7");
    EXPECT_EQ(form7().peakFrom->text(), "7");
    dialogs.inputAnswer = "1325";
    key(Qt::Key_A);
    form7().autoButton->click();
    EXPECT_NEAR((settings.peakSets[0].pkLow + settings.peakSets[0].pkHigh) / 2, 1325, 2);
    form7().clearButton->click();
    EXPECT_EQ(settings.peakSetCount, found - 1);
    dialogs.messageAnswer = false;
    form7().clearButton->click();  // declined: no step
    dialogs.messageAnswer = true;
    form7().activateWindow();
    QApplication::processEvents();
    for (int step = 0; step < 3; ++step)
        QTest::keyClick(form7().peakFrom, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(settings.peakSetCount, found);
    EXPECT_EQ(regionsOf(settings.peakSets[0]), regionsOf(measured[0]));
    EXPECT_EQ(form7().peakFrom->text().trimmed().toInt(), measured[0].pkLow);
    EXPECT_TRUE(form7().undoButton->isEnabled()) << "All Peaks is left";

    dialogs.rowAnswer = 1;  // in place of those
    dialogs.fileAnswer = {.path = folder.file("eu152-co60-cs137-4096.pkm")};
    form7().clearButton->click();
    form7().loadButton->click();
    ASSERT_EQ(settings.peakSetCount, found);
    EXPECT_EQ(settings.peakSets[found - 1].net, measured[found - 1].net);
    key(Qt::Key_Space);
    EXPECT_EQ(module->view.cursorCh, (measured[0].pkLow + measured[0].pkHigh) / 2);
}

TEST_F(Analysis, TakesARegionThatIsDrawnWithShift) {
    form2->grab();
    trigger("pkarea");
    PictureBox& plot = *form2->plotArea;
    const auto at = [&plot](int channel) {
        return QPoint(static_cast<const PainterCanvas&>(plot.canvas()).toDevice(channel, 0).x(),
                      plot.height() / 2);
    };
    const auto draw = [&](int from, int to) {
        QTest::mousePress(&plot, Qt::LeftButton, Qt::ShiftModifier, at(from));
        QMouseEvent move(QEvent::MouseMove, at(to), plot.mapToGlobal(at(to)), Qt::NoButton,
                         Qt::LeftButton, Qt::ShiftModifier);
        QApplication::sendEvent(&plot, &move);
        const QString told = form2->pointerStatus->text();
        QTest::mouseRelease(&plot, Qt::LeftButton, Qt::ShiftModifier, at(to));
        return told;
    };
    const auto shown = [](const QLineEdit* bound) { return bound->text().trimmed().toInt(); };
    EXPECT_TRUE(draw(1000, 1200).contains(" wide   sum "));
    draw(1500, 1300);  // backwards is the same
    EXPECT_NEAR(shown(form7().lowBackgroundFrom), 1000, 4);
    EXPECT_NEAR(shown(form7().lowBackgroundTo), 1200, 4);
    draw(1600, 1700);
    EXPECT_NEAR(shown(form7().peakFrom), 1300, 4);
    EXPECT_NEAR(shown(form7().highBackgroundTo), 1700, 4);
    EXPECT_GT(module->settings.peakSets[0].net, 1000);
    EXPECT_EQ(module->view.viewEndCh, 4096) << "it shows no other range";
    EXPECT_TRUE(form7().close());
    draw(1000, 2000);
    EXPECT_NEAR(module->view.viewEndCh, 2000, 4);
}

TEST_F(Analysis, OpensNoPeakAreasWithoutALiveTimeAndLetsTheUserLeaveThem) {
    trigger("pkarea");
    measureAt(1325);
    test::ChnBytes dead{.liveTime = 0};
    open(folder.write("dead.chn", dead.bytes()));
    EXPECT_EQ(dialogs.messages.back().text, "Run-time error '11':\n\nDivision by zero");
    EXPECT_FALSE(form7().isVisible());
    trigger("pkarea");
    EXPECT_FALSE(form7().isVisible());
    EXPECT_TRUE(form2->close());
}

TEST_F(Analysis, ClosesNoOtherWindowWhenRegionsOutOfOrderKeepTheProgramOpen) {
    for (const char* window : {"f11(1)", "win_wngy", "win_nd", "pkarea"})
        trigger(window);
    const auto shown = [] {
        return std::ranges::count_if(QApplication::topLevelWidgets(), &QWidget::isVisible);
    };
    const auto before = shown();
    form7().lowBackgroundFrom->setText("5");
    emit form7().lowBackgroundFrom->textEdited("5");
    EXPECT_FALSE(form2->close());
    EXPECT_EQ(shown(), before);
}

TEST_F(Analysis, KeepsARemarkInTheBytesThatItHas) {
    module->settings.peakSets[0] = {
        .bkg1Low = 10, .bkg1High = 20, .bkg2Low = 50, .bkg2High = 60, .pkLow = 30, .pkHigh = 40};
    module->settings.peakSets[0].name.assign("\x93\xfa\x95\x5c Cs-137");
    module->settings.peakSetCount = 1;
    trigger("pkarea");
    EXPECT_EQ(form7().remark->text(), QString::fromUtf8("日表 Cs-137"));
    QTest::keyClicks(form7().remark, "m");
    QTest::mouseClick(form7().nextButton, Qt::LeftButton);
    EXPECT_EQ(module->settings.peakSets[0].name.trimmed(), "\x93\xfa\x95\x5c Cs-137m");
    QTest::mouseClick(form7().previousButton, Qt::LeftButton);
    // 12 bytes are left.
    form7().remark->insert(QString::fromUtf8("表示の長い備考"));
    EXPECT_EQ(form7().remark->text(), QString::fromUtf8("日表 Cs-137m表示の長い備"));
    QTest::keyClicks(form7().remark, "1\b234");
    const QString shown = form7().remark->text();
    form7().remark->setCursorPosition(1);
    QTest::keyClicks(form7().remark, "x");
    EXPECT_EQ(form7().remark->text(), shown);
    QTest::mouseClick(form7().nextButton, Qt::LeftButton);
    QTest::mouseClick(form7().previousButton, Qt::LeftButton);
    EXPECT_EQ(form7().remark->text(), shown);
}

TEST_F(Analysis, TrimsAndSavesTheListOfResults) {
    trigger("pkarea");
    for (const int line : lines) {
        measureAt(line);
        QTest::mouseClick(form7().nextButton, Qt::LeftButton);
    }
    const auto save = [this](Form11& form, const std::string& where) {
        with<Form6>([where](Form6& chooser) {
            chooser.chosenFolder->setText(QString::fromStdString(where));
            QTest::mouseClick(chooser.okButton, Qt::LeftButton);
        });
        QTest::mouseClick(form.saveButton, Qt::LeftButton);
    };
    with<Form11>([&](Form11& form) {
        form.resultLines->item(0)->setSelected(true);
        form.resultLines->item(1)->setSelected(true);
        QTest::mouseClick(form.deleteButton, Qt::LeftButton);
        ASSERT_EQ(form.resultLines->count(), 3);
        EXPECT_EQ(form.resultLines->item(0)->text().left(4), "   3");
        // Cancelled: nothing is written, and nothing changes.
        with<Form6>([](Form6& chooser) { chooser.reject(); });
        QTest::mouseClick(form.saveButton, Qt::LeftButton);
        EXPECT_EQ(module->settings.saveAsDir, "");
        // The folder is gone: the fault is shown, and the list is still there.
        save(form, folder.file("gone"));
        EXPECT_EQ(dialogs.messages.back().text, "Run-time error '76':\n\nPath not found");
        EXPECT_TRUE(form.isVisible());
        form.resultLines->item(1)->setSelected(true);
        form.resultLines->item(2)->setSelected(true);
        // An older file stays until the user agrees.
        const char* name = "eu152-co60-cs137-4096.pkm";
        folder.write(name, "old");
        dialogs.messageAnswer = false;
        save(form, folder.path());
        EXPECT_EQ(dialogs.messages.back().text,
                  std::string(name) + " is there already.\nReplace it ?");
        EXPECT_EQ(dialogs.messages.back().details, folder.file(name));
        EXPECT_EQ(folder.read(name), "old");
        EXPECT_TRUE(form.isVisible());
        dialogs.messageAnswer = true;
        save(form, folder.path());
        EXPECT_FALSE(form.isVisible());
    });
    trigger("o1");
    EXPECT_EQ(modal, 5);
    EXPECT_EQ(module->settings.peakSetCount, 5);
    const std::string file = folder.read("eu152-co60-cs137-4096.pkm");
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 8 + 2 + 1);
    EXPECT_NE(file.find("\r\n   4  1558.0"), std::string::npos);
    EXPECT_EQ(file.find("\r\n   3  1325.0"), std::string::npos);
}

TEST_F(Analysis, WalksThroughDrivesAndFolders) {
    std::string marigold;
    std::string saveAs = "?" + folder.file("gone/deeper");
    std::filesystem::create_directories(folder.file("b/c"));
    std::filesystem::create_directory(folder.file("a"));
    WindowPlacement placement;
    Form6 form({marigold, saveAs}, placement, form2.get());
    EXPECT_EQ(form.windowTitle(), "Optn...Marigold Dir");
    EXPECT_EQ(form.prompt->text(), "Marigold Dir");
    const QString start = QString::fromStdString(folder.path());
    EXPECT_EQ(form.chosenFolder->text(), start + "/gone/deeper");
    EXPECT_EQ(form.folders->currentItem()->data(Qt::UserRole), start);
    EXPECT_EQ(form.volumes->itemText(0), "/");
    EXPECT_GE(form.volumes->findText(QDir::homePath()), 0);
    const auto enter = [&form](const QString& path) {
        for (int row = 0; row < form.folders->count(); ++row) {
            if (form.folders->item(row)->data(Qt::UserRole) == path) {
                form.folders->setCurrentRow(row);
                QTest::keyClick(form.folders, Qt::Key_Return);
                return;
            }
        }
        ADD_FAILURE() << path.toStdString();
    };
    form.show();
    enter(start + "/b");
    EXPECT_EQ(form.chosenFolder->text(), start + "/b");
    enter(start + "/b/c");
    enter(start);
    enter(start + "/a");
    EXPECT_EQ(form.chosenFolder->text(), start + "/a");
    EXPECT_TRUE(form.isVisible());
    form.volumes->setFocus();
    form.volumes->setCurrentIndex(0);
    emit form.volumes->activated(0);
    EXPECT_EQ(form.chosenFolder->text(), "/");
    enter("/tmp");
    QTest::mouseClick(form.okButton, Qt::LeftButton);
    EXPECT_EQ(saveAs, "/tmp");
    EXPECT_EQ(marigold, "");
    EXPECT_NE(placement.width, 0);
}

}  // namespace
}  // namespace kestrel
