// The main window, worked by keys, buttons, menus, drops and the wheel.
#include <csignal>
#include <cstdio>

#include <QClipboard>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>
#include <QTextBlock>
#include <QUrl>
#include <QWheelEvent>

#include "base/integers.h"
#include "chn_bytes.h"
#include "fault_matcher.h"
#include "nuclide_fixture.h"
#include "spectrum/energy_calibration.h"
#include "ui/reading_window.h"
#include "ui/session_end.h"
#include "view/picture_box_file.h"
#include "window_fixture.h"

namespace kestrel {
namespace {

class MainWindow : public test::WindowTest {
  protected:
    MainWindow() { start(); }

    void start() {
        WindowTest::start();
        form2->grab();
        QApplication::processEvents();
    }
    std::string status() const { return form2->statusLine->text().toStdString(); }
    std::string caption() const { return form2->windowTitle().toStdString(); }

    void markLineAt(const char* energy) const {
        module->nuclide.rows.resize(2);
        module->nuclide.rows[0].energy = energy;
        module->nuclide.rows[0].intensity = "85";
    }

    // How many dots of a colour the picture has in the column of a channel.
    int dotsAt(int channel, QRgb colour, const QImage& picture) const {
        const auto& canvas = static_cast<const PainterCanvas&>(form2->plotArea->canvas());
        const int x = canvas.toDevice(channel, 0).x();
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            count += (picture.pixel(x, y) | 0xFF000000) == colour ? 1 : 0;
        return count;
    }
};

constexpr QRgb green = 0xFF008000;
constexpr QRgb white = 0xFFFFFFFF;
constexpr QRgb lightRed = 0xFFFF0000;

TEST_F(MainWindow, StartsWithTheBaseCaptionAndABlankSpectrum) {
    EXPECT_EQ(caption(), "Kestrel  Ver: 1. 0 Rev: 0");
    EXPECT_EQ(status(), "ch:     0(   0.0keV) c:       0");
    EXPECT_EQ(module->view.viewEndCh, 8192);
    EXPECT_EQ(module->view.viewWidth, 8192);
    EXPECT_EQ(form2->countAxisButton->text(), "Lin");
    EXPECT_FALSE(form2->lowerScaleButton->isVisible());
    EXPECT_TRUE(form2->plotArea->hasFocus());
    EXPECT_FALSE(form2->findChild<QAction*>(QStringLiteral("pkarea"))->isEnabled());
    // The tick of the last channel stands in the last column of dots.
    const QImage& picture = form2->picture();
    const auto& canvas = static_cast<const PainterCanvas&>(form2->plotArea->canvas());
    EXPECT_NE(picture.pixelColor(picture.width() - 1, canvas.toDevice(0, -15).y()), Qt::black);
}

TEST_F(MainWindow, HasItsWholeMenuTree) {
    struct Item {
        const char* name;
        const char* caption;
    };
    const Item items[] = {
        {"f11(0)", "Open File..."},
        {"f11(1)", "Data Inform"},
        {"f11(4)", "Save as CSV"},
        {"f11(20)", "Print"},
        {"f11(30)", ""},
        {"f11(40)", "Exit"},
        {"pkarea", "pkArea"},
        {"jump", "Jump"},
        {"jump_ch", "Ch"},
        {"jump_engy", "Energy"},
        {"optn", "Option"},
        {"o11(0)", "Energy Calib"},
        {"o11(1)", "NuclDB Dir"},
        {"o11(2)", "Plot Mode"},
        {"o111(0)", "Line"},
        {"o111(1)", "Dots"},
        {"o11(3)", "NuclROI(ON/OFF)"},
        {"win", "Window"},
        {"win_wngy", "Open EnergyList"},
        {"win_nd", "Open NuclData"},
    };
    for (const Item& item : items) {
        const auto* action = form2->findChild<QAction*>(QString::fromLatin1(item.name));
        ASSERT_NE(action, nullptr) << item.name;
        EXPECT_EQ(action->text().remove(QLatin1Char('&')), item.caption);
    }
}

TEST_F(MainWindow, OpensASampleByKeysAndShowsIt) {
    openSample();
    EXPECT_EQ(caption(),
              KESTREL_SAMPLES "/eu152-co60-cs137-4096.chn ... Kestrel  Ver: 1. 0 Rev: 0");
    EXPECT_EQ(module->view.viewEndCh, 4096);
    EXPECT_EQ(module->view.viewWidth, 4097);
    EXPECT_EQ(module->spectrum.liveTime.wholeSeconds(), 600);
    EXPECT_GT(dotsAt(2000, white, form2->picture()), 0);
}

TEST_F(MainWindow, OpensRecentFilesAgainAndGreysThoseThatAreGone) {
    openSample("empty-4096.chn");
    const std::string gone = folder.write("a & b.chn", test::ChnBytes{}.bytes());
    open(gone);
    openSample();
    std::filesystem::remove(gone);
    auto* recent = form2->findChild<QAction*>("recent")->menu();
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 3);
    EXPECT_TRUE(recent->actions()[1]->text().endsWith("/a && b.chn"));
    EXPECT_FALSE(recent->actions()[1]->isEnabled());
    QTest::keyClick(recent, Qt::Key_3);
    EXPECT_TRUE(caption().starts_with(KESTREL_SAMPLES "/empty-4096.chn ... ")) << caption();
    EXPECT_EQ(module->preferences.recentFiles.front(), KESTREL_SAMPLES "/empty-4096.chn");
}

// The keys in the first column of the table that follows "In the main window:", sorted.
std::string toldKeys(const QString& page) {
    QStringList keys;
    for (const QString& line : page.section("In the main window:", 1).trimmed().split('\n')) {
        if (!line.startsWith('|'))
            break;
        QString cell = line.section('|', 1, 1);
        cell.remove('`').remove('\\');
        if (!cell.startsWith(" Alt+") && !line.startsWith("| Key") && !line.startsWith("|--"))
            keys += cell.trimmed().split(QRegularExpression(", | or "));
    }
    keys.removeAll("Alt and a letter");
    keys.sort();
    return keys.join(' ').toStdString() + ' ';
}

TEST_F(MainWindow, TellsInGuideAndKeysWhatItRunsOn) {
    QFile guide(QStringLiteral(":/guide/user-guide.md"));
    ASSERT_TRUE(guide.open(QIODevice::ReadOnly));
    const std::string keys = toldKeys(Form2::keysPage());
    EXPECT_EQ(toldKeys(QString::fromUtf8(guide.readAll())), keys);
    for (const PlotKey& key : SpectrumView::keys())
        EXPECT_NE(keys.find(std::string(key.name) + ' '), std::string::npos) << key.name;

    key(Qt::Key_F12);
    auto& window = *form2->findChild<ReadingWindow*>("guideWindow");
    window.findField->setText("right click");
    QTest::keyClick(window.findField, Qt::Key_Return);
    EXPECT_EQ(window.page->textCursor().selectedText().toLower(), "right click");
    const auto at = [&] { return window.page->textCursor().block().text(); };
    emit window.page->anchorClicked(QUrl("#measure-peak-areas"));
    EXPECT_EQ(at(), "Measure peak areas");
    emit window.page->anchorClicked(QUrl("nuclide-data.md"));
    EXPECT_EQ(window.page->source(), QUrl("qrc:/guide/nuclide-data.md"));
    for (const char* outside : {"file:///etc/passwd", "https://example.org/", "../kestrel.png"}) {
        emit window.page->anchorClicked(QUrl(outside));
        EXPECT_EQ(window.page->source(), QUrl("qrc:/guide/nuclide-data.md"));
        EXPECT_FALSE(
            window.page->loadResource(QTextDocument::ImageResource, QUrl(outside)).isValid());
    }
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());

    module->database = test::nuclideDatabase();
    module->settings.marigoldDir = KESTREL_NUCLIDE_DATA;
    trigger("about");
    const QString about = form2->findChild<ReadingWindow*>("aboutWindow")->page->toPlainText();
    for (const char* told : {"Ver: 1. 0", "Qt", "SQLite", "ENSDF", "2023-09-01"})
        EXPECT_TRUE(about.contains(told)) << about.toStdString();
}

TEST_F(MainWindow, LeafsThroughAFolderInTheSameViewAndWithTheSameRegions) {
    const auto copy = [&](const char* from, const char* to) {
        return folder.write(to, test::contentsOf(std::string(KESTREL_SAMPLES "/") + from));
    };
    open(copy("eu152-co60-cs137-4096.chn", "a1.chn"));
    copy("environmental-8192.chn", "a2.chn");
    copy("eu152-co60-cs137-4096.chn", "a10.chn");
    folder.write("a3.chn", "damaged");
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(module->view.viewEndCh, 8192) << "the whole of each";

    module->settings.peakSetCount = 2;
    for (const int set : {0, 1}) {
        PeakAreaSet& regions = module->settings.peakSets[set];
        regions.bkg1Low = 100;
        regions.bkg1High = 110;
        regions.pkLow = narrow16(120 + set);
        regions.pkHigh = 130;
        regions.bkg2Low = 140;
        regions.bkg2High = 150;
    }
    trigger("pkarea");
    QTest::mouseClick(form2->findChild<Form7*>()->nextButton, Qt::LeftButton);
    module->view.cursorCh = 1325;
    key(Qt::Key_PageUp);
    key(Qt::Key_L);
    const ViewState view = module->view;
    for (const char* end : {"/a2.chn", "/a10.chn", "/a10.chn"}) {
        key(Qt::Key_D, Qt::ControlModifier);
        EXPECT_NE(caption().find(end), std::string::npos) << caption();
        EXPECT_EQ(module->view.viewStartCh, view.viewStartCh);
        EXPECT_EQ(module->view.viewEndCh, view.viewEndCh);
        EXPECT_EQ(module->view.cursorCh, view.cursorCh);
        EXPECT_EQ(module->view.linLogMode, view.linLogMode);
        EXPECT_EQ(module->peakArea.fields.bounds.texts[2], " 121");
    }
    EXPECT_EQ(dialogs.messages.size(), 2U) << "a damaged file, and the end";
    key(Qt::Key_U, Qt::ControlModifier);
    key(Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(dialogs.messages.size(), 3U);
    EXPECT_NE(caption().find("/a2.chn"), std::string::npos) << caption();
}

TEST_F(MainWindow, SaysWhatARefusedFileLeftAndBringsTheSpectrumBack) {
    openSample();
    const auto* notice = form2->findChild<NoticeLine*>();
    const auto* text = notice->findChild<QLabel*>();
    auto* restore = notice->findChild<QPushButton*>(QStringLiteral("restore"));
    EXPECT_FALSE(notice->isVisible());
    const ViewState before = module->view;
    const QImage picture = form2->picture();
    form2->openSpectrumPath(folder.write("junk.chn", std::string(2000, 'n')));
    EXPECT_TRUE(notice->isVisible() && restore->isVisible());
    EXPECT_TRUE(text->text().startsWith("Reading junk.chn failed half-way"))
        << text->text().toStdString();
    EXPECT_EQ(notice->accessibleName(), text->text());
    restore->click();
    EXPECT_FALSE(notice->isVisible());
    QApplication::processEvents();
    EXPECT_EQ(form2->picture(), picture);
    EXPECT_EQ(module->spectrum.channelCount, 4096);
    EXPECT_EQ(module->view.viewWidth, before.viewWidth);
    EXPECT_EQ(module->view.cursorCh, before.cursorCh);
    EXPECT_TRUE(form2->plotArea->hasFocus());
    form2->openSpectrumPath(folder.write("cut.chn", test::ChnBytes{.channelCount = 4096}.bytes()));
    EXPECT_TRUE(notice->isVisible() && !restore->isVisible());
    notice->findChild<QPushButton*>(QStringLiteral("closeNotice"))->click();
    EXPECT_FALSE(notice->isVisible());
}

// Whether the widget takes what is dragged over it; it is then dropped there.
bool dragAndDrop(QWidget& widget, const QMimeData& data) {
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(&widget, &enter);
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    if (enter.isAccepted())
        QApplication::sendEvent(&widget, &drop);
    QApplication::processEvents();
    return enter.isAccepted();
}

TEST_F(MainWindow, OpensTheFirstFileThatIsDroppedOnIt) {
    QMimeData data;
    data.setUrls({QUrl(QStringLiteral("https://example.org/a.chn")),
                  QUrl::fromLocalFile(QStringLiteral(KESTREL_SAMPLES "/environmental-8192.chn")),
                  QUrl::fromLocalFile(QStringLiteral(KESTREL_SAMPLES "/empty-4096.chn"))});
    openSample();
    markLineAt("661.66");
    EXPECT_TRUE(dragAndDrop(*form2, data));
    const int line = energyToChannel(module->spectrum.calCurrent, 661.66);
    EXPECT_NE(module->channelColour[line], 0);  // the marks follow the calibration
    EXPECT_TRUE(caption().starts_with(KESTREL_SAMPLES "/environmental-8192.chn ... ")) << caption();
    EXPECT_EQ(module->view.viewEndCh, 8192);
    EXPECT_TRUE(form2->plotArea->hasFocus());
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.file("gone.chn")))});
    EXPECT_TRUE(dragAndDrop(*form2, data));
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "Run-time error '53':\n\nFile not found");
    QMimeData text;
    text.setText(QStringLiteral("a text"));
    EXPECT_FALSE(dragAndDrop(*form2, text));
}

TEST_F(MainWindow, TakesNoDroppedFileWhileAModalWindowIsOpen) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral(KESTREL_SAMPLES "/empty-4096.chn"))});
    QDialog modal(form2.get());
    modal.setModal(true);
    modal.show();
    EXPECT_FALSE(dragAndDrop(*form2, data));
    modal.close();
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(form2.get(), &drop);
    modal.show();  // before the drop comes to its turn
    QApplication::processEvents();
    EXPECT_EQ(caption(), "Kestrel  Ver: 1. 0 Rev: 0");
}

TEST_F(MainWindow, RefusesAFileFromOutsideAsItDoesInTheDialog) {
    openSample();
    form2->openSpectrumPath(folder.write("text.chn", "a text"));
    form2->openSpectrumPath(folder.write("text.pdf", "a text"));
    EXPECT_EQ(dialogs.messages.size(), 2U);
    EXPECT_TRUE(caption().starts_with(KESTREL_SAMPLES "/eu152-co60-cs137-4096.chn ... "));
}

TEST_F(MainWindow, SavesTheSpectrumAsCsvAndGoesBackToThePlot) {
    openSample();
    dialogs.fileAnswer = {.path = folder.file("out.csv"), .filterIndex = 1};
    form2->statusLine->setFocus();
    trigger("f11(4)");
    EXPECT_TRUE(
        folder.read("out.csv").starts_with("FILE NAME : " + folder.file("out.csv") + "\r\n"));
    EXPECT_TRUE(form2->plotArea->hasFocus());
}

TEST_F(MainWindow, ShowsOneGreenMarkAtTheCursorAndNoTraceOfOlderOnes) {
    openSample();
    for (int i = 0; i < 20; ++i)
        key(Qt::Key_Right, Qt::ShiftModifier);
    ASSERT_EQ(module->view.cursorCh, 640);
    const QImage shown = form2->plotArea->grab().toImage().convertToFormat(QImage::Format_RGB32);
    int green_columns = 0;
    for (int x = 0; x < shown.width(); ++x) {
        int dots = 0;
        for (int y = 0; y < shown.height(); ++y)
            dots += (shown.pixel(x, y) | 0xFF000000) == green ? 1 : 0;
        green_columns += dots > shown.height() / 2 ? 1 : 0;
    }
    EXPECT_EQ(green_columns, 1);
    EXPECT_GT(dotsAt(640, green, shown) + dotsAt(641, green, shown), shown.height() / 2);
}

TEST_F(MainWindow, JumpsFromPeakToPeakByTheSigns) {
    openSample();
    key(Qt::Key_A);  // an action of its own, later
    int peaks = 0;
    while (module->view.cursorCh < 4096 && peaks < 1000) {
        key(Qt::Key_Greater, Qt::ShiftModifier);
        ++peaks;
        if (module->view.cursorCh < 4096) {
            EXPECT_EQ(status()[3], '*') << module->view.cursorCh;
        }
    }
    EXPECT_GT(peaks, 30);
    EXPECT_LT(peaks, 200);
}

TEST_F(MainWindow, SwitchesScaleAndPlotModeByButtonsAndMenu) {
    openSample();
    QTest::mouseClick(form2->countAxisButton, Qt::LeftButton);
    EXPECT_EQ(form2->countAxisButton->text(), "Log");
    EXPECT_TRUE(form2->lowerScaleButton->isVisible());
    QTest::mouseClick(form2->lowerScaleButton, Qt::LeftButton);
    EXPECT_EQ(module->view.yScaleExp, 9);
    key(Qt::Key_Down);
    EXPECT_EQ(module->view.yScaleExp, 10);
    QTest::mouseClick(form2->expandButton, Qt::LeftButton);
    EXPECT_EQ(module->view.viewWidth, 2048);
    trigger("o111(1)");
    EXPECT_EQ(module->view.plotMode, PlotMode::Dots);
    EXPECT_TRUE(form2->plotArea->hasFocus());
}

TEST_F(MainWindow, PutsTheCursorWhereAMouseButtonIsPressed) {
    openSample();
    auto& canvas = static_cast<PainterCanvas&>(form2->plotArea->canvas());
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        const QPoint place = canvas.toDevice(1000 + static_cast<int>(button), 600);
        QTest::mousePress(form2->plotArea, button, {}, place);
        EXPECT_NEAR(module->view.cursorCh, 1000 + static_cast<int>(button), 3);
    }
}

void turnWheel(QWidget& widget, QPoint place, int angle) {
    QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, angle}, {}, {}, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&widget, &event);
}

TEST_F(MainWindow, ExpandsOncePerNotchOfTheWheelHoweverManyEventsItComesIn) {
    openSample();
    auto& canvas = static_cast<PainterCanvas&>(form2->plotArea->canvas());
    const QPoint place = canvas.toDevice(3000, 600);
    const auto widthAfter = [&](int angle) {
        turnWheel(*form2->plotArea, place, angle);
        return module->view.viewWidth;
    };
    EXPECT_EQ(widthAfter(120), 2048);
    EXPECT_NEAR(canvas.userX(place.x()), 3000, 2048 / 8.0 + 3);
    EXPECT_EQ(widthAfter(50), 2048);
    EXPECT_EQ(widthAfter(50), 2048);
    EXPECT_EQ(widthAfter(50), 1024);
    EXPECT_EQ(widthAfter(-100), 1024);
    EXPECT_EQ(widthAfter(-20), 2048);
    EXPECT_EQ(widthAfter(240), 512);
    EXPECT_EQ(module->view.cursorCh, 0);
}

TEST_F(MainWindow, CopiesThePlotAsAnImageAndListsAsText) {
    openSample();
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->image().size(), form2->picture().size());
    EXPECT_GT(dotsAt(2000, white, QApplication::clipboard()->image()), 0);
    trigger("f11(1)");
    QApplication::processEvents();
    TextList& list = *form2->findChild<Form10*>()->header;
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().count(QLatin1Char('\n')), 5);
    list.item(3)->setSelected(true);
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "Live Time:  30000sec");
    list.actions()[1]->trigger();  // Copy All of the context menu
    EXPECT_EQ(QApplication::clipboard()->text().count(QLatin1Char('\n')), 5);
}

TEST_F(MainWindow, NamesTheKeyOfEachButtonInItsToolTip) {
    openSample();
    const auto stateText = [this] {
        const ViewState& v = module->view;
        return QStringLiteral("%1 %2 %3 %4")
            .arg(v.cursorCh)
            .arg(v.viewWidth)
            .arg(v.yScaleExp)
            .arg(static_cast<int>(v.linLogMode));
    };
    module->view.cursorCh = 2000;  // far from the edges of the view
    key(Qt::Key_PageUp);
    for (QPushButton* b :
         {form2->countAxisButton, form2->expandButton, form2->shrinkButton, form2->lowerScaleButton,
          form2->raiseScaleButton, form2->stepRightButton, form2->stepLeftButton}) {
        const ViewState before = module->view;
        b->click();
        const QString byButton = stateText();
        module->view = before;
        const QString tip = b->toolTip();
        QString key = tip.mid(tip.indexOf(QLatin1Char('(')) + 1).chopped(1);
        key.replace(QStringLiteral("Page"), QStringLiteral("Pg"));  // as Qt calls them
        QTest::keySequence(form2->plotArea, QKeySequence(key));
        EXPECT_EQ(stateText(), byButton) << tip.toStdString();
    }
}

TEST_F(MainWindow, ShowsFaultsAndRefusalsAndGoesOn) {
    struct Case {
        const char* name;
        std::string bytes;
        const char* message;
    };
    const char* refusal = "File does not read.\nDifferent format ?!   Check file type !!";
    const Case cases[] = {
        {"text.chn", "a text", refusal},
        {"empty.chn", "", refusal},
        {"long.chn", test::ChnBytes{.channelCount = 17002}.bytes(),
         "Run-time error '9':\n\nSubscript out of range"},
        {"negative.chn", test::ChnBytes{.channelCount = -5}.bytes(), nullptr},
        {"full.chn", test::ChnBytes{.channelCount = 17001}.bytes(), nullptr},
        {"cut.chn", test::ChnBytes{}.bytes().substr(0, 41), nullptr},
    };
    for (const Case& c : cases) {
        dialogs.messages.clear();
        dialogs.pointer = Pointer::Hourglass;
        open(folder.write(c.name, c.bytes));
        ASSERT_EQ(dialogs.messages.size(), c.message == nullptr ? 0U : 1U) << c.name;
        if (c.message != nullptr) {
            EXPECT_EQ(dialogs.messages[0].text, c.message);
        }
        EXPECT_EQ(dialogs.pointer, Pointer::Default) << c.name;
        for (const Qt::Key which :
             {Qt::Key_Right, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_L, Qt::Key_Left})
            key(which);
        form2->resize(form2->width() + 1, form2->height());
        form2->grab();
        openSample();
        EXPECT_EQ(module->spectrum.channelCount, 4096) << c.name;
    }
}

TEST_F(MainWindow, GoesOnDrawingAfterARefusedFileHasLeftItsHeader) {
    openSample();
    open(folder.write("text.chn", "This is a text and not a spectrum at all."));
    ASSERT_GT(module->spectrum.channelCount, 17001);
    dialogs.messages.clear();
    for (const Qt::Key which : {Qt::Key_L, Qt::Key_PageUp, Qt::Key_Right})
        key(which);
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(MainWindow, StopsAHeldStepButtonWhenAMessageComes) {
    openSample();
    module->spectrum.calCurrent.b = 1e12;  // every status line overflows
    dialogs.duringMessage = [this] {
        QEvent blocked(QEvent::WindowBlocked);
        QApplication::sendEvent(form2.get(), &blocked);
        QTest::qWait(700);
    };
    QTest::mousePress(form2->stepRightButton, Qt::LeftButton);
    QTest::qWait(500);
    EXPECT_EQ(dialogs.messages.size(), 1U);
    EXPECT_FALSE(form2->stepRightButton->isDown());
}

// The message of a fault hands the activation back to the window.
TEST_F(MainWindow, TellsAFaultOfTheRedrawAtActivationOnce) {
    openSample();
    module->view.linLogMode = CountAxis::Linear;
    module->view.yScaleFactor = 300.0F;
    module->spectrum.counts[5] = 8000000;
    for (int i = 0; i < 3; ++i) {
        QEvent activated(QEvent::ActivationChange);
        QApplication::sendEvent(form2.get(), &activated);
    }
    EXPECT_EQ(dialogs.messages.size(), 1U);
    key(Qt::Key_PageUp);
    QEvent handedBack(QEvent::ActivationChange);
    QApplication::sendEvent(form2.get(), &handedBack);
    EXPECT_EQ(dialogs.messages.size(), 2U);
    // By mouse alone the plot, and with it the marks, come back.
    QTest::mouseClick(form2->countAxisButton, Qt::LeftButton);
    module->spectrum.counts[5] = 0;
    markLineAt("661.66");
    QApplication::sendEvent(form2.get(), &handedBack);
    EXPECT_GT(
        dotsAt(energyToChannel(module->spectrum.calCurrent, 661.66), lightRed, form2->picture()),
        0);
}

TEST_F(MainWindow, TellsAFaultOfTheRedrawAtANewSizeOnceTheLayoutIsDone) {
    openSample();
    module->view.linLogMode = CountAxis::Linear;
    module->view.yScaleFactor = 300.0F;
    module->spectrum.counts[5] = 8000000;
    dialogs.duringMessage = [this] { form2->resize(form2->width() + 10, form2->height()); };
    form2->resize(form2->width() + 10, form2->height());
    form2->resize(form2->width() + 10, form2->height());
    EXPECT_TRUE(dialogs.messages.empty());
    QApplication::processEvents();
    EXPECT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(MainWindow, HandsKeysTypedIntoTheStatusLineToThePlot) {
    openSample();
    form2->statusLine->setFocus();
    QTest::keyClick(form2->statusLine, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(form2->statusLine->hasFocus());
    QTest::keyClick(form2->statusLine, Qt::Key_Right);
    EXPECT_EQ(module->view.cursorCh, 1);
    EXPECT_TRUE(form2->plotArea->hasFocus());
}

TEST_F(MainWindow, ListsTheDataInformationAndKeepsItUpToDate) {
    trigger("f11(1)");
    auto* form10 = form2->findChild<Form10*>();
    ASSERT_NE(form10, nullptr);
    EXPECT_TRUE(form10->isVisible());
    EXPECT_EQ(form10->header->count(), 0);
    openSample();
    ASSERT_EQ(form10->header->count(), 6);
    EXPECT_EQ(form10->header->item(3)->text(), "Live Time:  30000sec");
    form10->resize(600, 200);
    form10->close();
    EXPECT_EQ(module->settings.windowPlacement[10].width, 9000);
}

TEST_F(MainWindow, SavesPlacesAndFoldersWhenItIsLeft) {
    openSample();
    form2->resize(790, 590);
    trigger("f11(40)");
    EXPECT_FALSE(form2->isVisible());
    ASSERT_TRUE(folder.has("kestrel.inf"));
    const auto restarted = std::make_unique<Module1>();
    startModule1(*restarted, folder.path());
    EXPECT_EQ(restarted->settings.lastDirectory, module->settings.lastDirectory);
    EXPECT_EQ(restarted->settings.windowPlacement[2].width, 790 * 15);
    module = std::make_unique<Module1>(std::move(*restarted));
    start();
    EXPECT_EQ(form2->size(), QSize(790, 590));
}

TEST_F(MainWindow, AsksBeforeItIsLeftWithSettingsThatCannotBeSaved) {
    module->settings.systemDir = folder.write("no-folder", "") + "/below";
    dialogs.messageAnswer = false;
    EXPECT_FALSE(form2->close());
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text,
              "The settings could not be saved.\nLeave without saving them ?");
    EXPECT_TRUE(dialogs.messages[0].details.ends_with("/below/kestrel.inf"));
    dialogs.messageAnswer = true;
    EXPECT_TRUE(form2->close());
}

TEST_F(MainWindow, HasSavedItsRegionsWheneverItIsKilled) {
    openSample();
    trigger("pkarea");
    auto& form7 = *form2->findChild<Form7*>();
    const auto saved = [this] {
        auto restarted = std::make_unique<Module1>();
        startModule1(*restarted, folder.path());
        return restarted->settings;
    };
    const auto type = [&form7](int first) {
        for (QLineEdit* bound : {form7.lowBackgroundFrom, form7.lowBackgroundTo, form7.peakFrom,
                                 form7.peakTo, form7.highBackgroundFrom, form7.highBackgroundTo}) {
            bound->setText(QString::number(first += 10));
            emit bound->textEdited(bound->text());
        }
    };
    type(100);
    QTest::mouseClick(form7.nextButton, Qt::LeftButton);
    EXPECT_EQ(saved().peakSetCount, 1);
    type(200);
    QTest::mouseClick(form7.previousButton, Qt::LeftButton);
    EXPECT_EQ(saved().peakSets[1].bkg1Low, 210);
    QTest::mouseClick(form7.clearButton, Qt::LeftButton);
    EXPECT_EQ(saved().peakSetCount, 1);
    type(300);
    form7.close();
    EXPECT_EQ(saved().peakSets[0].bkg1Low, 310);
    trigger("pkarea");
    auto& again = *form2->findChild<Form7*>();
    again.lowBackgroundFrom->setText("305");
    emit again.lowBackgroundFrom->textEdited("305");
    form2->endSession();
    EXPECT_EQ(saved().peakSets[0].bkg1Low, 305);
    EXPECT_EQ(dialogs.messages.size(), 1U);  // of "Clear"
}

TEST(SessionEnd, SavesBeforeASignalEndsTheProgram) {
    const auto endBy = [](int signal) {
        const SessionEnd end([] { std::fputs("saved", stderr); });
        std::raise(signal);
        QApplication::processEvents();
    };
    for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        EXPECT_EXIT(endBy(signal), testing::KilledBySignal(signal), "saved");
}

TEST_F(MainWindow, IgnoresAPlacementThatIsNotWiderThan1000Twips) {
    const QSize designed = form2->size();
    module->settings.windowPlacement[2] = {0, 0, 1000, 9000};
    start();
    EXPECT_EQ(form2->size(), designed);
    module->settings.windowPlacement[2] = {-900000, 2000000000, 2147483647, 2147483647};
    start();
    // With its frame, which is known only now.
    QTest::qWait(50);
    EXPECT_TRUE(form2->screen()->availableGeometry().contains(form2->frameGeometry()));
    EXPECT_NE(form2->frameGeometry(), form2->geometry());
}

TEST_F(MainWindow, ZoomsToWhatTheLeftButtonIsDrawnOver) {
    openSample();
    form2->grab();
    PictureBox& plot = *form2->plotArea;
    const auto at = [&plot](int channel) {
        return QPoint(static_cast<const PainterCanvas&>(plot.canvas()).toDevice(channel, 0).x(),
                      plot.height() / 2);
    };
    const auto drag = [&](QPoint from, QPoint to) {
        QTest::mousePress(&plot, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, plot.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                         {});
        QApplication::sendEvent(&plot, &move);
        const QImage seen = plot.grab().toImage();
        QTest::mouseRelease(&plot, Qt::LeftButton, {}, to);
        return seen;
    };
    const QPoint between = at(1500);
    const QRgb under = plot.grab().toImage().pixel(between);
    EXPECT_NE(drag(at(1000), at(2000)).pixel(between), under) << "the band";
    EXPECT_NEAR(module->view.cursorCh, 1000, 4);
    EXPECT_NEAR(module->view.viewStartCh, 1000, 4);
    EXPECT_NEAR(module->view.viewEndCh, 2000, 4);
    EXPECT_TRUE(form2->pointerStatus->text().startsWith(QStringLiteral("Channel 2")));
    key(Qt::Key_F4);
    EXPECT_EQ(module->view.viewEndCh, 4096);
    drag(at(1000), at(1000) + QPoint(3, 0));
    EXPECT_EQ(module->view.viewEndCh, 4096) << "a click is no range";
}

TEST_F(MainWindow, KeepsWhetherTheEnergiesAreShown) {
    EXPECT_TRUE(form2->energyStrip->isVisible());
    const int height = form2->plotArea->height();
    trigger("energyAxis");
    QApplication::processEvents();
    EXPECT_FALSE(form2->energyStrip->isVisible());
    EXPECT_GT(form2->plotArea->height(), height);
    form2->endSession();
    startModule1(*module, folder.path());
    EXPECT_FALSE(module->preferences.energyAxis);
}
TEST_F(MainWindow, SavesItsPictureWithTextsAsTexts) {
    openSample();
    const auto save = [this](const char* name) {
        dialogs.fileAnswer = {.path = folder.file(name)};
        trigger("savePicture");
        return folder.read(name);
    };
    const QImage image = QImage::fromData(QByteArray::fromStdString(save("a.png")));
    const QSize plot = form2->plotArea->size();
    EXPECT_EQ(image.size(), plot + QSize(0, form2->energyStrip->height()));
    // The described picture above, drawn for a second time and so with its ticks in red.
    form2->activateWindow();
    key(Qt::Key_L);
    key(Qt::Key_L);
    EXPECT_EQ(image.copy(QRect({}, plot)), form2->picture());
    const std::string svg = save("a.svg");
    EXPECT_NE(svg.find(">Comment  : Eu-152"), std::string::npos);
    EXPECT_NE(svg.find(">500<"), std::string::npos) << "an energy of the strip";
    EXPECT_TRUE(save("a.pdf").starts_with("%PDF-"));
    EXPECT_FAULT(savePicture({folder.file("b.png"), PictureKind::Png, {0, 0}}, {}, ""),
                 Fault::OutOfMemory);
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(MainWindow, KeepsItsColoursAndDrawsItselfInThem) {
    openSample();
    const QImage black = form2->picture().copy();
    for (const char* item : {"lightColours", "largeTexts", "fineTicks"})
        trigger(item);
    QApplication::processEvents();
    EXPECT_EQ(form2->picture().pixel(1, 1), white);
    for (const char* item : {"blackColours", "largeTexts", "fineTicks"})
        trigger(item);
    QApplication::processEvents();
    key(Qt::Key_Home);
    EXPECT_EQ(form2->picture(), black);
    trigger("lightColours");
    form2->endSession();
    form2.reset();
    startModule1(*module, folder.path());
    start();
    EXPECT_EQ(form2->picture().pixel(1, 1), white);
}

TEST_F(MainWindow, HasAMenuOfThePlotWhereTheRightButtonEntersNothing) {
    openSample();
    const auto ask = [this](QContextMenuEvent::Reason reason) {
        QContextMenuEvent asked(reason, {200, 200}, form2->plotArea->mapToGlobal(QPoint(200, 200)));
        QApplication::sendEvent(form2->plotArea, &asked);
        return QApplication::activePopupWidget();
    };
    QWidget* menu = ask(QContextMenuEvent::Mouse);
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_A);
    EXPECT_EQ(module->view.viewEndCh, 4096);
    trigger("pkarea");
    EXPECT_EQ(ask(QContextMenuEvent::Mouse), nullptr);
    menu = ask(QContextMenuEvent::Keyboard);
    ASSERT_NE(menu, nullptr);
    menu->close();
}

TEST_F(MainWindow, ChoosesByLettersOfAMenuThatAreAlsoKeysOfThePlot) {
    QTest::keyClick(form2.get(), Qt::Key_F, Qt::AltModifier);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_I);
    ASSERT_EQ(dialogs.fileDialogs.size(), 1U);
    EXPECT_EQ(dialogs.fileDialogs[0].title, "Save Picture");
}

class SecondSpectrum : public MainWindow {
  protected:
    SecondSpectrum() {
        openSample();
        before = module->spectrum;
    }
    bool usable(const char* name) const {
        return form2->findChild<QAction*>(QString::fromLatin1(name))->isEnabled();
    }
    void openSecond(const std::string& path) {
        dialogs.fileAnswer = {.path = path};
        trigger("openSecond");
    }
    Spectrum before;
    const std::string background = KESTREL_SAMPLES "/environmental-8192.chn";
};

TEST_F(SecondSpectrum, IsSeenUntilItIsTakenAway) {
    const QImage alone = form2->plotArea->grab().toImage();
    for (const char* item : {"swapSpectra", "scale", "difference", "removeSecond"})
        EXPECT_FALSE(usable(item)) << item;
    openSecond(background);
    QApplication::processEvents();
    const QString line = form2->secondStatus->text();
    EXPECT_TRUE(form2->secondStatus->isVisible() && line.endsWith("environmental-8192.chn"));
    EXPECT_TRUE(usable("swapSpectra") && usable("scaleLiveTime"));
    trigger("scaleOneToOne");
    EXPECT_TRUE(form2->secondStatus->text().startsWith("Second x 1.0000   c: "));
    const QImage lines = form2->picture().copy();
    EXPECT_GT(dotsAt(3000, 0xFF808080, lines), 0);
    trigger("difference");
    EXPECT_EQ(module->view.linLogMode, CountAxis::Linear);
    EXPECT_NE(form2->picture(), lines);
    dialogs.fileAnswer = {.path = folder.file("a.svg")};
    trigger("savePicture");
    EXPECT_NE(folder.read("a.svg").find("#808080"), std::string::npos);
    trigger("removeSecond");
    key(Qt::Key_L);
    key(Qt::Key_Home);
    QApplication::processEvents();
    EXPECT_FALSE(form2->secondStatus->isVisible());
    EXPECT_EQ(form2->plotArea->grab().toImage(), alone);
}

TEST_F(SecondSpectrum, ChangesPlacesWithAllThatBelongsToIt) {
    openSecond(background);
    key(Qt::Key_PageUp);
    const auto shown = std::pair(module->view.viewStartCh, module->view.viewEndCh);
    module->notice.add("of the first");
    module->spectrum.calCurrent.a = 5;
    trigger("swapSpectra");
    EXPECT_TRUE(caption().starts_with(background));
    EXPECT_EQ(module->spectrum.channelCount, 8192);
    EXPECT_EQ(module->comparison.onFirst.counts.size(), 8192U);
    EXPECT_TRUE(module->notice.lines.empty());
    EXPECT_EQ(module->comparison.second->spectrum.calCurrent.a, 5);
    key(Qt::Key_F6);
    EXPECT_EQ(module->notice.text(), "of the first");
    EXPECT_EQ(std::pair(module->view.viewStartCh, module->view.viewEndCh), shown);
    before.calCurrent.a = 5;
    before.fileLeftOpen = module->spectrum.fileLeftOpen;
    EXPECT_EQ(module->spectrum, before);
    EXPECT_EQ(module->comparison.second->spectrum.filePath, background);
}

// Longer, shorter, empty and without calibration or live time, each with calibrations of all kinds:
// the two change places and back, and all is drawn as it was.
TEST_F(SecondSpectrum, MayHaveAnyLengthAndCalibration) {
    module->view.linLogMode = CountAxis::Linear;
    for (const char* name : {"eu152-co60-cs137-1024.chn", "environmental-8192.chn",
                             "empty-4096.chn", "eu152-co60-cs137-4096-dos.asc"})
        for (const Calibration& calibration : {Calibration{}, {3000, -1, 0}, {0, 2, -1e-3}})
            for (const bool difference : {false, true}) {
                SCOPED_TRACE(name);
                module->spectrum.calCurrent = calibration;
                module->spectrum.openedLiveTime = {};
                openSecond(KESTREL_SAMPLES "/" + std::string(name));
                module->comparison.difference = difference;
                key(Qt::Key_Home);
                const QImage shown = form2->picture().copy();
                const QString line = form2->secondStatus->text();
                EXPECT_TRUE(line.startsWith("Second not scaled   c: ")) << line.toStdString();
                key(Qt::Key_F6);
                EXPECT_NE(form2->picture(), shown);
                key(Qt::Key_F6);
                EXPECT_EQ(form2->picture(), shown);
                EXPECT_EQ(form2->secondStatus->text(), line);
            }
    EXPECT_TRUE(dialogs.messages.empty());
}

// A next file, another calibration and a file that cannot be read.
TEST_F(SecondSpectrum, FollowsTheFirstAndStaysWhatItWas) {
    openSecond(background);
    const auto second = module->comparison.second;
    for (const std::string& bad : {folder.write("junk.n42", "<xml"), folder.write("a.chn", "x")}) {
        openSecond(bad);
        EXPECT_EQ(module->comparison.second, second) << bad;
        EXPECT_EQ(module->spectrum, before) << bad;
    }
    EXPECT_EQ(dialogs.messages.size(), 2U);
    openSample("eu152-co60-cs137-1024.chn");
    EXPECT_EQ(module->comparison.onFirst.counts.size(), 1024U);
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(module->spectrum.channelCount, 4096);
    EXPECT_EQ(module->comparison.onFirst.counts.size(), 4096U);
    open(folder.write("cut.chn", "x"));
    form2->findChild<QPushButton*>("restore")->click();
    EXPECT_EQ(module->spectrum.channelCount, 4096);
    EXPECT_EQ(module->comparison.onFirst.counts.size(), 4096U);
    EXPECT_EQ(module->comparison.second, second);
}

}  // namespace
}  // namespace kestrel
