// Printing through the real windows, into real PDF files.
#include <gmock/gmock.h>

#include <QImage>
#include <QLabel>
#include <QPrinter>
#include <QProcess>
#include <QTimer>

#include "analysis/form11_results.h"
#include "base/deferred_canvas.h"
#include "base/runtime_fault.h"
#include "print/form8_print_preview.h"
#include "recording_job.h"
#include "ui/notice_line.h"
#include "ui/painter_canvas.h"
#include "ui/print_job.h"
#include "window_fixture.h"

namespace kestrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished()) << program.toStdString();
    return process.readAllStandardOutput().toStdString();
}

// A canvas that fails at the n-th line.
class FailingCanvas : public test::RecordingCanvas {
  public:
    explicit FailingCanvas(int linesLeft) : linesLeft_(linesLeft) {}
    void lineTo(double x, double y, Colour colour) override {
        if (--linesLeft_ < 0)
            throw RuntimeFault(Fault::Printer);
        RecordingCanvas::lineTo(x, y, colour);
    }

  private:
    int linesLeft_;
};

class FailingJob : public PrintJob {
  public:
    FailingJob(int linesLeft, bool& ended) : canvas_(linesLeft), ended_(ended) {}
    Canvas& canvas() override { return canvas_; }
    PageLayout layout() const override { return a4Page; }
    void endDocument() override { ended_ = true; }

  private:
    FailingCanvas canvas_;
    bool& ended_;
};

class Printing : public test::WindowTest {
  protected:
    Printing() {
        start();
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString::fromStdString(folder.file("out.pdf")));
        printer.setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
    }
    void intoPdf() {
        dialogs.beginJob = [this] { return beginPrintJob(printer, "a spectrum"); };
    }
    // Opens the preview, does `action` there and closes it.
    void inPreview(const std::function<void(Form8&)>& action) {
        QTimer::singleShot(0, qApp, [this, action] {
            auto* form8 = qobject_cast<Form8*>(QApplication::activeModalWidget());
            ASSERT_NE(form8, nullptr);
            action(*form8);
            EXPECT_TRUE(form8->isVisible()) << "printing leaves the window open";
            form8->cancelAction->trigger();
            ++previews;
        });
        trigger("f11(20)");
        EXPECT_EQ(previews, 1);
    }
    void print() {
        inPreview([](Form8& form8) { QTest::keyClick(&form8, Qt::Key_Return); });
    }
    // The texts of the file, every run of blanks as one.
    std::string text() const {
        const std::string found =
            outputOf(QStringLiteral("pdftotext"),
                     {QStringLiteral("-layout"), printer.outputFileName(), QStringLiteral("-")});
        return QString::fromStdString(found).simplified().toStdString();
    }

    QPrinter printer{QPrinter::HighResolution};
    int previews = 0;
};

// Whether the line stands in the window with that text, and nothing of it behind something else.
bool saysAbove(const QWidget& window, const char* text) {
    const auto* line = window.findChild<NoticeLine*>();
    return line->isVisible() && line->findChild<QLabel*>()->text() == text &&
           window.childAt(line->geometry().center())->parentWidget() == line;
}

TEST_F(Printing, ASpectrumBecomesAPdfOfModestSizeWithItsTexts) {
    openSample("eu152-co60-cs137-16384.chn");
    module->spectrum.comment.assign(
        "\x83\x76\x81\x5B\x83\x8B\x90\x85");  // pool water, in code page 932
    intoPdf();
    print();
    EXPECT_EQ(dialogs.printed, std::vector<std::string>{"eu152-co60-cs137-16384"});
    EXPECT_LT(folder.read("out.pdf").size(), 300'000U);
    const std::string found = text();
    std::size_t from = 0;
    for (const char* next : {"Kestrel File Name: " KESTREL_SAMPLES, "Date: 2026", "Live: 600sec",
                             "Date : 2026", "Comment : プール水", "Live: 600sec", "Mca : 1",
                             "Seg : 1", "8192", "CHANNEL", "1500", "ENERGY(keV)"}) {
        const std::size_t place = found.find(next, from);
        ASSERT_NE(place, std::string::npos) << next << " in " << found;
        from = place + 1;
    }
    const std::string fonts = outputOf(QStringLiteral("pdffonts"), {printer.outputFileName()});
    EXPECT_THAT(fonts, AllOf(HasSubstr("IPAGothic"), HasSubstr("yes no  yes"))) << "embedded";
}

TEST_F(Printing, ThePreviewShowsThePaperThatWasChosenLast) {
    openSample("eu152-co60-cs137-1024.chn");
    printer.setPageOrientation(QPageLayout::Landscape);
    intoPdf();
    module->notice.add("the file ends before its counts");
    inPreview([](Form8& form8) {
        EXPECT_TRUE(saysAbove(form8, "the file ends before its counts"));
        EXPECT_LT(form8.sheet().width(), form8.sheet().height());
        const QImage before = form8.sheet();
        form8.printAction->trigger();
        EXPECT_GT(form8.sheet().width(), form8.sheet().height());
        EXPECT_NE(form8.sheet(), before);
    });
}

TEST_F(Printing, TheCurveOfThePreviewFollowsThePlotMode) {
    openSample("eu152-co60-cs137-1024.chn");
    const auto preview = [this] {
        QImage sheet;
        previews = 0;
        inPreview([&](Form8& form8) { sheet = form8.sheet(); });
        return sheet;
    };
    const auto differing = [](const QImage& a, const QImage& b) {
        int dots = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x)
                dots += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
        }
        return dots;
    };
    const QImage lines = preview();
    module->view.plotMode = PlotMode::Dots;
    const QImage points = preview();
    module->spectrum.counts.fill(0);
    const QImage bare = preview();
    EXPECT_GT(differing(lines, bare), 4000) << "a line through every channel";
    // 1023 points of 5 x 5 dots, of which neighbours cover each other in part.
    EXPECT_GT(differing(points, bare), 1023 * 5);
    EXPECT_LT(differing(points, bare), 1023 * 25);
}

TEST_F(Printing, APrinterThatFailsLeavesTheProgramGoingOn) {
    openSample("eu152-co60-cs137-1024.chn");
    bool ended = false;
    dialogs.beginJob = [&] { return std::make_unique<FailingJob>(20, ended); };
    print();
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "プリンタに問題があります。");
    EXPECT_FALSE(ended) << "half a page is not sent";

    // After the curve it is a fault like any other; no printer at all likewise.
    const int all = [&] {
        test::RecordingCanvas canvas;
        drawPrintedSpectrum({module->spectrum, module->derived, module->view}, 0, canvas, dialogs);
        return static_cast<int>(canvas.lines.size());
    }();
    for (const int linesLeft : {all, -1}) {
        previews = 0;
        dialogs.messages.clear();
        dialogs.beginJob = [&]() -> std::unique_ptr<PrintJob> {
            if (linesLeft < 0)
                throw RuntimeFault(Fault::Printer);
            return std::make_unique<FailingJob>(linesLeft, ended);
        };
        print();
        ASSERT_EQ(dialogs.messages.size(), 1U);
        EXPECT_EQ(dialogs.messages[0].text, "Run-time error '482':\n\nPrinter error");
        EXPECT_FALSE(ended);
    }
}

TEST_F(Printing, APdfThatCannotBeWrittenIsToldAndOneThatIsCancelledIsNot) {
    openSample("eu152-co60-cs137-1024.chn");
    printer.setOutputFileName(QString::fromStdString(folder.file("gone/out.pdf")));
    intoPdf();
    print();
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "Run-time error '76':\n\nPath not found");
    EXPECT_EQ(folder.entries(), 0U);
    dialogs.messages.clear();
    dialogs.beginJob = nullptr;
    previews = 0;
    print();
    EXPECT_EQ(dialogs.printed.size(), 2U);
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST(DeferredCanvas, DrawsTheSameLater) {
    PainterCanvas model(printFont());
    model.attach(nullptr, {400, 300}, 1);
    const auto draw = [](Canvas& canvas) {
        canvas.setScale({0, 100, 100, 0});
        canvas.clear(0xFFFFFF);
        canvas.setForeColour(0x0000FF);
        canvas.clipTo({10, 90, 90, 10});
        canvas.line(0, 0, 100, 100, 0);
        canvas.clipTo(canvas.scale());
        canvas.setDrawWidth(5);
        canvas.point(20, 80, 0xFF0000);
        canvas.moveTo(50 - canvas.textWidth("text") / 2, 50 + canvas.textHeight());
        canvas.print("text");
    };
    QImage now(400, 300, QImage::Format_RGB32);
    QImage later = now;
    now.fill(Qt::gray);
    later.fill(Qt::gray);
    PainterCanvas canvas(printFont());
    canvas.attach(&now, now.size(), 1);
    draw(canvas);
    canvas.finish();
    DeferredCanvas deferred(model);
    draw(deferred);
    canvas.attach(&later, later.size(), 1);
    deferred.replay(canvas);
    canvas.finish();
    EXPECT_EQ(now, later);
}

TEST_F(Printing, ResultsArePrintedFromTheirWindow) {
    openSample("eu152-co60-cs137-4096.chn");
    Settings& settings = module->settings;
    settings.peakSetCount = 128;
    for (std::int16_t i = 0; i < 128; ++i) {
        const auto centre = static_cast<std::int16_t>(100 + 10 * i);
        PeakAreaSet& set = settings.peakSets[i];
        set.bkg1Low = static_cast<std::int16_t>(centre - 30);
        set.bkg1High = static_cast<std::int16_t>(centre - 20);
        set.pkLow = static_cast<std::int16_t>(centre - 5);
        set.pkHigh = static_cast<std::int16_t>(centre + 5);
        set.bkg2Low = static_cast<std::int16_t>(centre + 20);
        set.bkg2High = static_cast<std::int16_t>(centre + 30);
    }
    const ResultSource source{module->spectrum,   settings.peakSets, settings.peakSetCount,
                              settings.saveAsDir, module->notice,    dialogs};
    module->notice.add("what is shown mixes two spectra");
    Form11 form11(source, {}, settings.windowPlacement[11], form2.get());
    form11.show();
    EXPECT_TRUE(saysAbove(form11, "what is shown mixes two spectra"));
    QTest::mouseClick(form11.printButton, Qt::LeftButton);
    EXPECT_TRUE(form11.isVisible()) << "cancelled";
    EXPECT_FALSE(folder.has("out.pdf"));

    intoPdf();
    QTest::mouseClick(form11.printButton, Qt::LeftButton);
    std::size_t from = 0;
    const std::string whole = text();
    for (int i = 0; i < form11.resultLines->count(); ++i) {
        const std::string line = form11.resultLines->item(i)->text().simplified().toStdString();
        from = whole.find(line, from);
        ASSERT_NE(from, std::string::npos) << line;
    }
    EXPECT_EQ(whole.find("mixes"), std::string::npos) << "on the screen only";
    form11.resultLines->item(3)->setSelected(true);
    QTest::mouseClick(form11.printButton, Qt::LeftButton);
    EXPECT_THAT(text(), AllOf(HasSubstr("Kestrel PKarea cal"), HasSubstr(" 4 130.0"),
                              testing::Not(HasSubstr(" 5 140.0"))));
}

}  // namespace
}  // namespace kestrel
