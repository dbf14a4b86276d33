#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <memory>

#include "analysis/result_list.h"
#include "analysis/results_printout.h"
#include "base/page_text.h"
#include "print/spectrum_printout.h"
#include "recording_job.h"
#include "scripted_dialogs.h"

namespace kestrel {
namespace {

using test::RecordingCanvas;
using test::RecordingJob;
using test::ScriptedDialogs;
using test::Text;
using testing::ElementsAre;

std::vector<std::string> textsOf(const std::vector<Text>& page) {
    std::vector<std::string> result;
    for (const Text& text : page)
        result.push_back(text.text);
    return result;
}

struct PrintoutTest : testing::Test {
    PrintoutTest() {
        spectrum->filePath = "/data/SPEC.CHN";
        spectrum->startDate.assign("16NOV261");
        spectrum->startTime.assign("101530");
        spectrum->comment.assign("pool\nwater");
        spectrum->liveTime = {30000};
        spectrum->mcaNumber = 2;
        spectrum->segmentNumber = 3;
        spectrum->channelCount = 1024;
        spectrum->counts[500] = 5000;
        view.viewStartCh = 100;
        view.viewEndCh = 300;
        view.viewWidth = 200;
    }
    bool draw(double headerEnd = 0) {
        canvas.clear(0);
        return drawPrintedSpectrum({*spectrum, *derived, view}, headerEnd, canvas, dialogs);
    }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
    ViewState view;
    RecordingCanvas canvas;
    ScriptedDialogs dialogs;
};

TEST_F(PrintoutTest, TheFrameHasItsMarginsAndTheHeaderStandsInOrder) {
    ASSERT_TRUE(draw());
    EXPECT_EQ(canvas.scale(), (UserScale{100 - 0.05 * 200 - 0.2 * 200, 1400, 340, -440}));
    const auto texts = textsOf(canvas.texts);
    EXPECT_THAT(
        std::vector(texts.begin(), texts.begin() + 5),
        ElementsAre("Date     : 2026/11/16-101530", "Comment  : pool water" + std::string(54, ' '),
                    "Live: 600sec", "Mca : 2", "Seg : 3"));
    EXPECT_GT(canvas.texts[4].y - canvas.lineHeight, 1200) << "above the plot";
    // A page header of several lines pushes the frame down.
    draw(0.1);
    const UserScale& page = canvas.scale();
    EXPECT_GT(page.top, 1400);
    EXPECT_EQ(page.bottom, -440);
    EXPECT_LE(canvas.texts[0].y, page.top - 0.1 * (page.top - page.bottom));
    EXPECT_NEAR(canvas.texts[4].y - canvas.lineHeight, 1200, canvas.lineHeight / 2);
    // A text so long that it begins over the count axis stands above the axis' labels.
    spectrum->comment.assign(std::string(64, 'x'));
    canvas.lineHeight = 60;
    canvas.characterWidth = 0.013;
    draw();
    EXPECT_LT(canvas.texts[0].x, 100);
    EXPECT_GE(canvas.texts[4].y - canvas.lineHeight, 1200 + canvas.lineHeight);
    EXPECT_LE(canvas.texts[0].y, canvas.scale().top);
}

TEST_F(PrintoutTest, CountsBeyondTheFullScaleDoNotRunThroughTheHeader) {
    view.linLogMode = CountAxis::Linear;
    view.yScaleExp = 11;
    view.viewEndCh = 600;
    view.viewWidth = 500;
    view.yScaleFactor = 1200.0F / 2048.0F;
    draw();
    EXPECT_TRUE(std::ranges::any_of(canvas.lines, [](auto& line) { return line.y2 > 1400; }));
    const UserScale page = canvas.scale();
    EXPECT_THAT(canvas.clips, ElementsAre(UserScale{page.left, 1200, page.right, -30}, page))
        << "only the curve is cut";
}

TEST_F(PrintoutTest, AFaultWhileDrawingEndsItWithTheMessage) {
    spectrum->counts[500] = 0;
    spectrum->channelCount = 27680;
    EXPECT_FALSE(draw());
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "プリンタに問題があります。");
}

TEST_F(PrintoutTest, PagesAreDrawnAsRecorded) {
    view.viewEndCh = 116;
    view.viewWidth = 16;
    spectrum->counts[104] = 70;
    for (const CountAxis axis : {CountAxis::Logarithmic, CountAxis::Linear}) {
        view.linLogMode = axis;
        ASSERT_TRUE(draw());
        drawEnergyAxis({*spectrum, *derived, view}, canvas);
        const char* name = axis == CountAxis::Logarithmic ? "log.txt" : "linear.txt";
        std::ifstream file(std::string(KESTREL_PRINTED_PAGES "/") + name);
        const std::string recorded(std::istreambuf_iterator<char>(file), {});
        EXPECT_EQ(canvas.drawing(), recorded) << name;
    }
}

TEST_F(PrintoutTest, ThePageHeaderFillsPrintZones) {
    canvas.lineHeight = 0.75;
    const PageLayout wide{2000, 500, 0, 0, 1200, 500};  // 200 columns; a character takes 2
    printPageHeader(*spectrum, canvas, wide);
    EXPECT_THAT(textsOf(canvas.texts), ElementsAre("Kestrel ", "File Name: /data/SPEC.CHN",
                                                   "Date: 2026/11/16-101530", "Live: 600sec"));
    EXPECT_EQ(canvas.texts[0].x, 10);
    EXPECT_EQ(canvas.texts[1].x, 28) << "behind column 26";
    EXPECT_EQ(canvas.texts[2].x, 84);
    EXPECT_EQ(canvas.texts[3].x, 140);
    EXPECT_EQ(canvas.texts[3].y, 0);
}

TEST_F(PrintoutTest, APathTooLongForThePageIsContinued) {
    RecordingCanvas narrow;
    const PageLayout layout{600, 500, 0, 0, 600, 500};
    const PageText page(narrow, layout);
    const std::string path = std::string(85, 'a') + "/" + std::string(40, 'b');
    EXPECT_THAT(page.broken(path), ElementsAre(path.substr(0, 86), path.substr(86)));
    std::string japanese;
    for (int i = 0; i < 50; ++i)
        japanese += "水";
    const auto pieces = page.broken(japanese);
    std::string whole;
    for (const std::string& piece : pieces) {
        EXPECT_EQ(piece.size() % 3, 0U) << "no character is cut";
        EXPECT_LE(piece.size(), 90U);
        whole += piece;
    }
    EXPECT_EQ(whole, japanese);
    EXPECT_THAT(page.broken(""), ElementsAre(""));
    // A label printer: there is no room at all, and the text runs off the paper.
    const PageText label(narrow, {79, 252, 28, 28, 23, 196});
    EXPECT_THAT(label.broken(path), ElementsAre(path));
}

TEST_F(PrintoutTest, ResultsGoOnOverPagesWithoutLosingALine) {
    const int fullPage = 77;  // below title and header: the closing rule takes the last row along
    for (const int count : {1, 40, fullPage, 128}) {
        std::vector<std::string> lines;
        for (int i = 0; i < count; ++i)
            lines.push_back("line " + std::to_string(i));
        test::Printed printed;
        RecordingJob job(printed);
        printResults(*spectrum, lines, "2026/11/23-02:50:00", job);
        EXPECT_FALSE(printed.ended) << "the document is left open";
        job.endDocument();

        ASSERT_EQ(printed.pages.size(), count < fullPage ? 1U : 2U);
        std::vector<std::string> body;
        for (const auto& page : printed.pages) {
            EXPECT_LE(page.back().y + 0.75, a4Page.height / 12) << "inside the page";
            for (const Text& text : page) {
                EXPECT_EQ(text.colour, 0) << "black on white";
                if (text.text.starts_with("line"))
                    body.push_back(text.text);
            }
        }
        EXPECT_EQ(body, lines);
        const auto first = textsOf(printed.pages.front());
        EXPECT_THAT(std::vector(first.begin(), first.begin() + 4),
                    ElementsAre("Kestrel   PKarea cal", "Printout Date: 2026/11/23-02:50:00", "",
                                "File Name   :/data/SPEC.CHN"));
        EXPECT_EQ(printed.pages.back().back().text, resultFooter());
        if (count < fullPage)
            continue;
        auto second = textsOf(printed.pages.back());
        second.resize(5);
        EXPECT_THAT(second, ElementsAre("File Name   :/data/SPEC.CHN", "Page 2",
                                        std::string(resultHeadings), std::string(94, '-'),
                                        count == 128 ? "line 77" : "line 76"));
    }
}

}  // namespace
}  // namespace kestrel
