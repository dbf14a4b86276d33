// Every file that the program writes, with every call that its writing makes going wrong.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <memory>

#include "analysis/pkm_file.h"
#include "app/preferences.h"
#include "app/settings.h"
#include "base/failing_calls.h"
#include "fault_matcher.h"
#include "scripted_dialogs.h"
#include "spectrum/csv_export.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

using test::FailingCalls;
using test::Mishap;
using test::PlannedMishap;
using test::TempFolder;

struct WrittenFile {
    const char* name;
    void (*write)(Spectrum& spectrum, const TempFolder& folder);
};

const WrittenFile files[] = {
    {"kestrel.inf",
     [](Spectrum&, const TempFolder& folder) {
         Settings settings;
         settings.systemDir = folder.path();
         writeSettings(settings, {});
     }},
    {"kestrel.ini",
     [](Spectrum&, const TempFolder& folder) {
         Preferences preferences;
         preferences.folder = folder.path();
         writePreferences(preferences);
     }},
    {"peaks.pkm",
     [](Spectrum& spectrum, const TempFolder& folder) {
         spectrum.filePath = "peaks.chn";
         writePkmFile(spectrum, folder.path(), {"one", "two"});
     }},
    {"table.csv",
     [](Spectrum& spectrum, const TempFolder& folder) {
         test::ScriptedDialogs dialogs;
         dialogs.fileAnswer.path = folder.file("table.csv");
         std::string directory;
         saveAsCsv(spectrum, directory, dialogs);
     }},
};

class WrittenFiles : public testing::TestWithParam<bool> {
  protected:
    // Puts the old file back, or takes the file away where there was none.
    void begin() {
        std::filesystem::remove_all(folder.path());
        std::filesystem::create_directory(folder.path());
        if (GetParam())
            folder.write(file.name, "the old contents");
    }
    std::string contents() const { return folder.has(file.name) ? folder.read(file.name) : "none"; }

    // Calls `attempt` for every call in turn, until the writing makes no more calls. Returns how
    // many there were.
    template <typename Attempt>
    int forEveryCall(Attempt attempt) {
        int number = 0;
        do
            begin();
        while (attempt(++number));
        return number - 1;
    }

    void write() { file.write(*spectrum, folder); }

    // What stands in a file of this kind before and after it is written.
    std::pair<std::string, std::string> oldAndNew(const WrittenFile& written) {
        file = written;
        begin();
        std::string before = contents();
        write();
        return {before, contents()};
    }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    TempFolder folder;
    WrittenFile file = files[0];
};

// Nearly all calls can fail only together with the writing; what does not matter to it may fail
// unseen.
TEST_P(WrittenFiles, AreOldOrNewAndTheUserIsToldWhateverCallFails) {
    int injected = 0;
    for (const WrittenFile& written : files) {
        const auto states = oldAndNew(written);
        const std::string& before = states.first;
        const std::string& after = states.second;
        for (const PlannedMishap& kind :
             {PlannedMishap{Mishap::Failure, ENOSPC}, PlannedMishap{Mishap::Failure, EIO},
              PlannedMishap{Mishap::ShortWrite, ENOSPC},
              PlannedMishap{Mishap::ShortWrite, 0, 1, "write"}}) {
            injected += forEveryCall([&](int number) {
                PlannedMishap plan = kind;
                plan.number = number;
                int fault = 0;
                bool happened = false;
                {
                    const FailingCalls failing(plan);
                    fault = test::faultOf([&] { write(); });
                    happened = FailingCalls::happened();
                }
                EXPECT_TRUE(contents() == (fault == 0 ? after : before))
                    << file.name << ", call " << number << ", errno " << plan.error;
                EXPECT_EQ(folder.entries(), contents() == "none" ? 0U : 1U) << number;
                return happened;
            });
        }
    }
    EXPECT_GT(injected, 60);
    RecordProperty("injected", injected);
}

TEST_P(WrittenFiles, AreOldOrNewWhenTheProgramIsKilledAtAnyMoment) {
    int killed = 0;
    for (const WrittenFile& written : files) {
        const auto states = oldAndNew(written);
        const std::string& before = states.first;
        const std::string& after = states.second;
        for (const Mishap mishap : {Mishap::KillBefore, Mishap::KillWithin, Mishap::KillAfter}) {
            killed += forEveryCall([&](int number) {
                const pid_t child = fork();
                if (child == 0) {
                    const PlannedMishap plan{mishap, 0, number};
                    const FailingCalls failing(plan);
                    write();
                    _exit(0);
                }
                int status = 0;
                waitpid(child, &status, 0);
                const std::string left = contents();
                EXPECT_TRUE(left == before || left == after) << file.name << " " << number;
                // What a killed one leaves behind is in nobody's way.
                write();
                EXPECT_TRUE(contents() == after) << file.name << " " << number;
                return WIFSIGNALED(status);
            });
        }
    }
    EXPECT_GT(killed, 60);
    RecordProperty("killed", killed);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAnOldFile, WrittenFiles, testing::Bool());

}  // namespace
}  // namespace kestrel
