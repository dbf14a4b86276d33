#include "base/file_replacement.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "base/failing_calls.h"
#include "base/file_place.h"
#include "fault_matcher.h"
#include "ordinary_user.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;

struct RefusedPath {
    std::string path;
    Fault fault;
};

TEST(FileReplacement, MakesAndReplacesAFile) {
    const TempFolder folder;
    replaceFile(folder.file("a"), "first, and longer");
    EXPECT_EQ(folder.read("a"), "first, and longer");
    replaceFile(folder.file("a"), "second");
    EXPECT_EQ(folder.read("a"), "second");
    replaceFile(folder.file("a"), "");
    EXPECT_EQ(folder.read("a"), "");
    EXPECT_EQ(folder.entries(), 1U);
}

TEST(FileReplacement, ActsInTheCurrentFolderForABareName) {
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    replaceFile("a", "x");
    fs::current_path(before);
    EXPECT_EQ(folder.read("a"), "x");
}

TEST(FileReplacement, TellsTheKindsOfFailureApart) {
    const TempFolder folder;
    const std::pair<int, Fault> cases[] = {
        {ENOSPC, Fault::DiskFull},     {EDQUOT, Fault::DiskFull},      {EFBIG, Fault::DiskFull},
        {EACCES, Fault::PathAccess},   {EPERM, Fault::PathAccess},     {EROFS, Fault::PathAccess},
        {ENOENT, Fault::PathNotFound}, {ENOTDIR, Fault::PathNotFound}, {EIO, Fault::DeviceError},
    };
    for (const auto& [error, fault] : cases) {
        const test::PlannedMishap plan{.error = error, .only = "openat"};
        {
            const test::FailingCalls failing(plan);
            EXPECT_FAULT(replaceFile(folder.file("a"), "x"), fault) << error;
        }
        const test::FailingCalls failing(plan);
        EXPECT_FAULT(findFilePlace(folder.file("a")), fault) << error;
    }
    EXPECT_FAULT(findFilePlace(std::string("a\0b", 3)), Fault::BadFileName);
}

TEST(FileReplacement, IsRefusedForWhatIsNoWritableFile) {
    const TempFolder folder;
    fs::permissions(folder.write("protected", "old"), fs::perms::owner_read);
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder.file("loop"));
    const std::size_t entries = folder.entries();
    const RefusedPath cases[] = {
        {folder.file("protected"), Fault::PermissionDenied},
        {folder.path(), Fault::PathAccess},
        {folder.file("cut") + '\0' + "/a.pkm", Fault::BadFileName},
        {folder.file("pipe"), Fault::PathAccess},
        {folder.file("loop"), Fault::PathAccess},
        {folder.file(std::string(300, 'n')), Fault::PathAccess},
        {folder.file("no/such"), Fault::PathNotFound},
        {folder.file("protected/below"), Fault::PathNotFound},
    };
    for (const RefusedPath& refused : cases)
        EXPECT_FAULT(replaceFile(refused.path, "new"), refused.fault) << refused.path;
    EXPECT_EQ(folder.read("protected"), "old");
    EXPECT_EQ(folder.entries(), entries);
}

TEST(FileReplacement, NeedsTheRightsOfAnOrdinaryUser) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old");
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::permissions(folder.path(), fs::perms::all);
    const test::OrdinaryUser user;
    EXPECT_FAULT(replaceFile(path, "new"), Fault::PermissionDenied);
}

TEST(FileReplacement, NeedsAFolderThatCanBeWritten) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old");
    fs::permissions(path, fs::perms(0666));
    fs::permissions(folder.path(), fs::perms(0555));
    const test::OrdinaryUser user;
    EXPECT_FAULT(replaceFile(path, "new"), Fault::PathAccess);
}

TEST(FileReplacement, KeepsThePermissionsOfTheOldFile) {
    const TempFolder folder;
    // But a set-id bit would lend the user's rights to whoever runs the file.
    for (const auto& [before, after] : {std::pair{0600, 0600}, {0666, 0666}, {06775, 0775}}) {
        fs::permissions(folder.write("a", "old"), fs::perms(before));
        replaceFile(folder.file("a"), "new");
        EXPECT_EQ(fs::status(folder.file("a")).permissions(), fs::perms(after));
    }
}

TEST(FileReplacement, ReplacesTheFileThatALinkLeadsTo) {
    const TempFolder folder;
    fs::create_directory(folder.file("real"));
    folder.write("real/a", "old");
    fs::create_symlink("real/a", folder.file("link"));
    fs::create_symlink(folder.file("real/b"), folder.file("dangling"));
    replaceFile(folder.file("link"), "new");
    replaceFile(folder.file("dangling"), "made");
    EXPECT_TRUE(fs::is_symlink(folder.file("link")));
    EXPECT_EQ(folder.read("real/a"), "new");
    EXPECT_EQ(folder.read("real/b"), "made");
}

// Whatever others could have put in the way of a file to have another one of the user replaced.
TEST(FileReplacement, FollowsNoLinkThatAnotherUserMayHavePlanted) {
    struct Case {
        const char* about;
        fs::perms folder;
        uid_t owner;  // of the link
        const char* link;
        const char* target;
        int fault;
    };
    const uid_t self = geteuid();
    constexpr uid_t stranger = 12345;
    constexpr int refused = static_cast<int>(Fault::PathAccess);
    const Case cases[] = {
        {"one's own", fs::perms(0755), self, "in/a", "../kept", 0},
        {"one's own, of a folder", fs::perms(0755), self, "in", "../real", 0},
        {"in a folder of all", fs::perms(0777), self, "in/a", "../kept", refused},
        {"in a folder of all, sticky", fs::perms(01777), self, "in/a", "../kept", refused},
        {"of another user", fs::perms(0755), stranger, "in/a", "../kept", refused},
        {"of another user, of a folder", fs::perms(0755), stranger, "in", "../real", refused},
        {"of another user, to nothing", fs::perms(0755), stranger, "in/a", "../new", refused},
    };
    for (const Case& c : cases) {
        if (c.owner != self && self != 0)
            continue;  // only the superuser can make links of others
        const TempFolder folder;
        const std::string below = folder.file("below");
        for (const char* made : {"below", "below/in", "real"})
            fs::create_directory(folder.file(made));
        folder.write("below/kept", "old");
        folder.write("real/a", "old");
        const fs::path link = fs::path(below) / c.link;
        fs::remove(link);
        fs::create_symlink(c.target, link);
        ASSERT_EQ(lchown(link.c_str(), c.owner, getegid()), 0);
        fs::permissions(link.parent_path(), c.folder);
        EXPECT_EQ(test::faultOf([&] { replaceFile(below + "/in/a", "new"); }), c.fault) << c.about;
        const bool toFile = std::string_view(c.link) == "in/a";
        EXPECT_EQ(folder.read(toFile ? "below/kept" : "real/a"), c.fault == 0 ? "new" : "old")
            << c.about;
        EXPECT_FALSE(folder.has("below/new")) << c.about;
    }
}

TEST(FileReplacement, ShowsNobodyTheNewContentsBeforeTheyAreWhole) {
    const TempFolder folder;
    fs::permissions(folder.write("a", "old"), fs::perms(0644));
    for (const char* name : {"a", "b"}) {
        const pid_t child = fork();
        if (child == 0) {
            const test::PlannedMishap plan{test::Mishap::KillAfter, 0, 1, "write"};
            const test::FailingCalls failing(plan);
            replaceFile(folder.file(name), "new");
            _exit(0);
        }
        waitpid(child, nullptr, 0);
    }
    int unfinished = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder.path())) {
        if (entry.path().filename() == "a")
            continue;
        EXPECT_EQ(entry.status().permissions(), fs::perms(0600));
        ++unfinished;
    }
    EXPECT_EQ(unfinished, 2);
}

TEST(FileReplacement, LeavesTheOldFileWholeWhenTheSystemStopsTheWriting) {
    const TempFolder folder;
    folder.write("a", "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int fault = test::faultOf([&] { replaceFile(folder.file("a"), std::string(5000, 'x')); });
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(fault, static_cast<int>(Fault::DiskFull));
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_EQ(folder.entries(), 1U);
}

}  // namespace
}  // namespace kestrel
