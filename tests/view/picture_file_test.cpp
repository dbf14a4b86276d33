#include "view/picture_file.h"

#include <gtest/gtest.h>

#include "scripted_dialogs.h"

namespace kestrel {
namespace {

TEST(PictureFile, TakesSizesThatMakeAPicture) {
    EXPECT_EQ(pictureSizeOf("1600x1000"), (PictureSize{1600, 1000}));
    EXPECT_EQ(pictureSizeOf(" 300  X 200 "), (PictureSize{300, 200}));
    for (const char* text : {"", "x", "1600", "299x200", "300x199", "10001x300", "9000x9000",
                             "1600x1000x2", "-800x600", "99999999999x600", "1e3x600"})
        EXPECT_FALSE(pictureSizeOf(text)) << text;
}

TEST(PictureFile, IsOfTheKindThatItsNameOrTheFilterSays) {
    struct Case {
        const char* name;
        int filter;
        const char* path;
        PictureKind kind;
    };
    for (const Case& c : {Case{"/a/b.SVG", 1, "/a/b.SVG", PictureKind::Svg},
                          {"/a/b.chn", 3, "/a/b.chn.pdf", PictureKind::Pdf},
                          {"/a/b", 0, "/a/b.png", PictureKind::Png}}) {
        test::ScriptedDialogs dialogs;
        dialogs.fileAnswer = {c.name, c.filter};
        std::string folder;
        const auto file = askPictureFile("/x/spec.chn", {700, 400}, folder, dialogs);
        ASSERT_TRUE(file) << c.name;
        EXPECT_EQ(file->path, c.path);
        EXPECT_EQ(file->kind, c.kind);
        EXPECT_EQ(file->size, (PictureSize{700, 400}));
        EXPECT_EQ(dialogs.fileDialogs[0].fileName, "spec");
        EXPECT_EQ(dialogs.choices.size(), c.kind == PictureKind::Png ? 1U : 0U);
    }
    test::ScriptedDialogs dialogs;
    dialogs.fileAnswer.path = "/a/b.png";
    dialogs.messageAnswer = false;
    std::string folder;
    EXPECT_FALSE(askPictureFile("", {700, 400}, folder, dialogs)) << "the size was cancelled";
}

}  // namespace
}  // namespace kestrel
