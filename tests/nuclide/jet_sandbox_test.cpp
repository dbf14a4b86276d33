#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "nuclide/jet/sandbox.h"
#include "temp_folder.h"

namespace kestrel::jet {
namespace {

// How many of the things that a process taken over by a file would try succeed in the sandbox.
int harmDone(const test::TempFolder& folder, int handle) {
    const std::string kept = folder.file("kept");
    const std::string made = folder.file("made");
    std::signal(SIGXFSZ, SIG_IGN);
    int harm = 0;
    harm += write(handle, "x", 1) == 1 ? 1 : 0;
    const int target = open(kept.c_str(), O_WRONLY);
    harm += target >= 0 && write(target, "x", 1) == 1 ? 1 : 0;
#if !defined(KESTREL_SANITIZED)
    harm += open(made.c_str(), O_WRONLY | O_CREAT, 0600) >= 0 ? 1 : 0;
    harm += open(kept.c_str(), O_WRONLY | O_TRUNC) >= 0 ? 1 : 0;
    harm += unlink(kept.c_str()) == 0 ? 1 : 0;
    harm += rename(kept.c_str(), made.c_str()) == 0 ? 1 : 0;
    harm += socket(AF_INET, SOCK_STREAM, 0) >= 0 ? 1 : 0;
    harm += fork() == 0 ? 1 : 0;
    execl("/bin/true", "true", nullptr);
#endif
    const int reading = open(kept.c_str(), O_RDONLY);
    char byte = 0;
    return harm + (read(reading, &byte, 1) == 1 && byte == 'k' ? 0 : 100);
}

TEST(JetSandbox, LeavesNothingButReading) {
    const test::TempFolder folder;
    folder.write("kept", "k");
    const int inherited = open(folder.write("other", "o").c_str(), O_WRONLY | O_APPEND);
    const pid_t child = fork();
    if (child == 0) {
        enterSandbox();
        _exit(harmDone(folder, inherited));
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(inherited);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(folder.read("kept"), "k");
    EXPECT_EQ(folder.read("other"), "o");
    EXPECT_FALSE(folder.has("made"));
}

}  // namespace
}  // namespace kestrel::jet
