// The edges between the core and Qt: text codec, virtual keys, canvas.

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QKeyEvent>

#include "base/palette.h"
#include "ui/fonts.h"
#include "ui/grid.h"
#include "ui/outside_paths.h"
#include "ui/painter_canvas.h"
#include "ui/placement.h"
#include "ui/text_codec.h"
#include "ui/virtual_keys.h"

namespace kestrel {
namespace {

TEST(TextCodec, TakesUtf8ThenTheJapaneseCodePageThenLatin1) {
    struct Case {
        std::string bytes;
        const char16_t* text;
    };
    const Case cases[] = {
        {"Soil 1", u"Soil 1"},
        {"", u""},
        {"\xE5\x9C\x9F", u"土"},                       // UTF-8
        {"\x93y\x8F\xEB 1  ", u"土壌 1  "},            // code page 932
        {"\xC3\xBD\xC4 ", u"ﾃｽﾄ "},                    // the same, half-width
        {"\x87\x40", u"①"},                            // its extensions
        {"\x93y\x8F", u"土"},                          // cut inside a character
        {"Filtro de Carv\xE3o", u"Filtro de Carvão"},  // Latin-1
        {"Irradia\xE7\xE3o", u"Irradiação"},
        {"Caf\xE9", u"Café"},
        {"\x80\xFF", u"\u0080\u00FF"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(toWindow(c.bytes).toStdString(), QString::fromUtf16(c.text).toStdString());
}

TEST(TextCodec, GivesTextsBackInTheBytesTheyCameIn) {
    for (const std::string bytes :
         {"Soil 1", "\x93y\x8F\xEB 1  ", "\x87\x40", "Filtro de Carv\xE3o", "Caf\xE9", ""})
        EXPECT_EQ(fromWindow(toWindow(bytes)), bytes);
    EXPECT_EQ(fromWindow(QStringLiteral("土壌")), "\x93y\x8F\xEB");
    for (const char16_t* text : {u"Zażółć", u"γ 511 keV", u"é土", u"😀"})
        EXPECT_EQ(toWindow(fromWindow(QString::fromUtf16(text))), QString::fromUtf16(text));
}

TEST(OutsidePaths, MayBeRelativeOrAUrl) {
    QDir::setCurrent(QDir::tempPath());
    const std::string here = QDir::currentPath().toStdString();
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"/a b/c%20d.chn", "/a b/c%20d.chn"},
        {"d/../c.chn", here + "/c.chn"},
        {"-c.chn", here + "/-c.chn"},
        {"file:///a%20b/%C3%A9.chn", "/a b/\xC3\xA9.chn"},
        {"file:///caf%E9.chn", "/caf\xE9.chn"},
        {"file://other/b.chn", here + "/file:/other/b.chn"},
        {"http://a/b.chn", here + "/http:/a/b.chn"},
        {"/caf\xE9.chn", "/caf\xE9.chn"},
    };
    for (const auto& [argument, path] : cases)
        EXPECT_EQ(fullPathOf(argument), path) << argument;
}

TEST(Placement, PutsANewWindowBesideTheOthersWhereThereIsRoom) {
    struct Case {
        QRect owner;
        QRect screen;
        QList<QRect> others;
        std::optional<QPoint> corner;
    };
    const QRect large(0, 0, 1920, 1080);
    for (const Case& c : {Case{{0, 40, 1100, 800}, large, {}, QPoint(1100, 40)},
                          {{0, 40, 1100, 800}, large, {{1499, 200, 9, 9}}, QPoint(1100, 780)},
                          {{821, 40, 1100, 800}, large, {}, QPoint(421, 40)},
                          {{400, 0, 1520, 780}, large, {}, QPoint(0, 0)},
                          {{300, 300, 1620, 780}, large, {}, QPoint(300, 0)},
                          {{0, 0, 881, 700}, {0, 0, 1280, 800}, {}, std::nullopt}}) {
        QList<QRect> shown = c.others;
        shown += c.owner;
        EXPECT_EQ(cornerBeside(c.owner, {400, 300}, c.screen, shown), c.corner) << c.owner.x();
    }
}

TEST(GridRows, ShowAndCopyWhatADatabaseHoldsAsTexts) {
    Grid grid(standardPalette, nullptr);
    grid.setFormat(">|<Nuclide|>Energy");
    grid.setRows({{{"Cs\x1B\n=1"}, {"  -1.5"}}, {{"=A1\t=B1"}, {"2"}}});
    EXPECT_FALSE(grid.text(1, 1).contains(QChar(0x1B)));
    grid.selectAll();
    const QStringList rows = grid.selectedText().split('\n');
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0].section('\t', 1), "  -1.5");
    EXPECT_TRUE(rows[1].startsWith("'=A1"));
    EXPECT_EQ(rows[1].section('\t', 1), "2");
}

TEST(VirtualKeys, TranslateKeysAndShiftStates) {
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int code, shift;
    };
    const Case cases[] = {
        {Qt::Key_Left, Qt::NoModifier, 37, 0},        {Qt::Key_Right, Qt::ShiftModifier, 39, 1},
        {Qt::Key_Up, Qt::ControlModifier, 38, 2},     {Qt::Key_Down, Qt::AltModifier, 40, 4},
        {Qt::Key_PageUp, Qt::NoModifier, 33, 0},      {Qt::Key_L, Qt::ShiftModifier, 'L', 1},
        {Qt::Key_F1, Qt::NoModifier, 112, 0},         {Qt::Key_F7, Qt::NoModifier, 118, 0},
        {Qt::Key_Less, Qt::ShiftModifier, 188, 1},    {Qt::Key_Less, Qt::NoModifier, 188, 1},
        {Qt::Key_Comma, Qt::NoModifier, 188, 0},      {Qt::Key_Greater, Qt::ShiftModifier, 190, 1},
        {Qt::Key_Percent, Qt::ShiftModifier, 0, 1},   {Qt::Key_ParenLeft, Qt::ShiftModifier, 0, 1},
        {Qt::Key_Question, Qt::ShiftModifier, 63, 1},
    };
    for (const Case& c : cases) {
        const VirtualKey key = virtualKey(QKeyEvent(QEvent::KeyPress, c.key, c.modifiers));
        EXPECT_EQ(key.code, c.code) << c.key;
        EXPECT_EQ(key.shift, c.shift) << c.key;
    }
}

class OnImage : public testing::Test {
  protected:
    OnImage() {
        canvas.attach(&image, image.size(), 1.0);
        canvas.setScale({0, 100, 100, 0});
        canvas.clear(standardPalette[0]);
    }
    QRgb at(int x, int y) {
        canvas.finish();
        return image.pixel(x, y);
    }

    QImage image{100, 100, QImage::Format_RGB32};
    PainterCanvas canvas{fixedPitchFont(10)};
};

TEST_F(OnImage, DrawsLinesAndPointsInTheUserScale) {
    canvas.line(10, 90, 20, 90, standardPalette[12]);
    canvas.lineTo(20, 70, standardPalette[10]);
    canvas.setDrawWidth(2);
    canvas.point(50, 50, standardPalette[15]);
    EXPECT_EQ(at(15, 10), 0xFFFF0000);
    EXPECT_EQ(at(20, 25), 0xFF00FF00);
    EXPECT_EQ(at(49, 49), 0xFFFFFFFF);
    EXPECT_EQ(at(50, 50), 0xFFFFFFFF);
    EXPECT_EQ(at(51, 51), 0xFF000000);
}

TEST_F(OnImage, PrintsBelowAndRightOfTheCurrentPointAndGoesToTheNextLine) {
    canvas.setForeColour(standardPalette[15]);
    canvas.moveTo(30, 80);
    canvas.print("H");
    canvas.lineTo(100, 80 - canvas.textHeight(), standardPalette[12]);
    canvas.finish();
    int inside = 0;
    for (int y = 20; y < 20 + qRound(canvas.textHeight()); ++y) {
        for (int x = 30; x < 40; ++x)
            inside += qRed(image.pixel(x, y)) > 100 ? 1 : 0;
    }
    EXPECT_GT(inside, 10);
    EXPECT_EQ(at(0, 20 + qRound(canvas.textHeight())), 0xFFFF0000);
}

TEST_F(OnImage, SurvivesAScaleWithoutExtentAndCoordinatesFarAway) {
    canvas.line(-1e300, 1e300, 1e300, -1e300, standardPalette[12]);
    canvas.setScale({5, 5, 5, 5});
    canvas.line(0, 0, 10, 10, standardPalette[12]);
    canvas.print("text");
    EXPECT_EQ(canvas.userX(50), 5);
    canvas.finish();
}

}  // namespace
}  // namespace kestrel
