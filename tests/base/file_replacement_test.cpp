#include "base/file_replacement.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "base/failing_calls.h"
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
        const test::PlannedMishap plan{.error = error, .only = "fopen"};
        const test::FailingCalls failing(plan);
        EXPECT_FAULT(replaceFile(folder.file("a"), "x"), fault) << error;
    }
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
    for (const fs::perms permissions : {fs::perms(0600), fs::perms(0666)}) {
        fs::permissions(folder.write("a", "old"), permissions);
        replaceFile(folder.file("a"), "new");
        EXPECT_EQ(fs::status(folder.file("a")).permissions(), permissions);
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
