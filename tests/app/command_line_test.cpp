#include "app/command_line.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrel {
namespace {

// What "kestrel *" passes in a folder of a stranger's files must reach neither the toolkit nor
// anything else but the list of files.
TEST(CommandLine, IsAnsweredOrNamesOneFile) {
    struct Case {
        std::vector<const char*> arguments;
        const char* file;
        int status;  // -1: a window opens
        const char* answer;
    };
    const Case cases[] = {
        {{}, "", -1, ""},
        {{"kestrel"}, "", -1, ""},
        {{"kestrel", "a b.chn"}, "a b.chn", -1, ""},
        {{"kestrel", "--", "-platformpluginpath"}, "-platformpluginpath", -1, ""},
        {{"kestrel", "--"}, "", -1, ""},
        {{"kestrel", "-"}, "-", -1, ""},
        {{"kestrel", "--help"}, "", 0, "Usage"},
        {{"kestrel", "--version", "a.chn"}, "", 0, "Kestrel 1."},
        {{"kestrel", "-platformpluginpath", "."}, "", 2, "no option -platformpluginpath"},
        {{"kestrel", "-platformpluginpath=."}, "", 2, "no option"},
        {{"kestrel", "a.chn", "b.chn"}, "", 2, "here are two: a.chn, b.chn"},
        {{"kestrel", "--", "a.chn", "--help"}, "", 2, "here are two"},
    };
    for (const Case& c : cases) {
        std::vector<char*> arguments;
        for (const char* argument : c.arguments)
            arguments.push_back(const_cast<char*>(argument));
        const CommandLine line = readCommandLine(arguments);
        const std::string all = testing::PrintToString(c.arguments);
        EXPECT_EQ(line.file, c.file) << all;
        EXPECT_EQ(line.ends ? line.status : -1, c.status) << all;
        EXPECT_NE(line.answer.find(c.answer), std::string::npos) << all << line.answer;
    }
}

}  // namespace
}  // namespace kestrel
