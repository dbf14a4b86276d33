#include "base/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace kestrel::test {
namespace {

const PlannedMishap* plan = nullptr;
int calls = 0;

bool goesWrong(std::string_view name) {
    return plan != nullptr && (plan->only.empty() || plan->only == name) && ++calls == plan->number;
}

bool writesShort() {
    return plan->mishap == Mishap::ShortWrite;
}

[[noreturn]] void die() {
    raise(SIGKILL);
    std::abort();
}

// The function that the program would have called.
template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// `failing` and `within` do what is still done when the call fails or the process ends in it.
template <typename Whole, typename Failing, typename Within>
auto call(const char* name, Whole whole, Failing failing, Within within) {
    if (!goesWrong(name))
        return whole();
    switch (plan->mishap) {
        case Mishap::KillBefore:
            die();
        case Mishap::KillWithin:
            static_cast<void>(within());
            die();
        case Mishap::KillAfter:
            static_cast<void>(whole());
            die();
        case Mishap::Failure:
        case Mishap::ShortWrite:
            break;
    }
    const auto result = failing();
    errno = plan->error;
    return result;
}

template <typename Whole, typename Failing>
auto call(const char* name, Whole whole, Failing failing) {
    return call(name, whole, failing, whole);
}

template <typename... Arguments>
int failingWithMinusOne(const char* name, Arguments... arguments) {
    auto* const real = next<int(Arguments...)>(name);
    return call(
        name, [&] { return real(arguments...); }, [] { return -1; });
}

}  // namespace

FailingCalls::FailingCalls(const PlannedMishap& planned) {
    calls = 0;
    plan = &planned;
}

FailingCalls::~FailingCalls() {
    plan = nullptr;
}

bool FailingCalls::happened() {
    return plan != nullptr && calls >= plan->number;
}

}  // namespace kestrel::test

// These stand in front of the C library's own.
using kestrel::test::call;
using kestrel::test::failingWithMinusOne;
using kestrel::test::next;
using kestrel::test::writesShort;

extern "C" {

FILE* fopen(const char* path, const char* mode) {
    static auto* const real = next<FILE*(const char*, const char*)>("fopen");
    return call(
        "fopen", [&] { return real(path, mode); }, [] { return static_cast<FILE*>(nullptr); });
}

std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, FILE* file) {
    static auto* const real =
        next<std::size_t(const void*, std::size_t, std::size_t, FILE*)>("fwrite");
    const auto half = [&] { return real(bytes, size, count / 2, file); };
    const auto failing = [&] { return writesShort() ? half() : std::size_t{0}; };
    return call(
        "fwrite", [&] { return real(bytes, size, count, file); }, failing, half);
}

int fclose(FILE* file) {
    static auto* const real = next<int(FILE*)>("fclose");
    const auto failing = [&] {
        real(file);
        return EOF;
    };
    return call(
        "fclose", [&] { return real(file); }, failing);
}

int fsync(int file) {
    return failingWithMinusOne("fsync", file);
}
int rename(const char* from, const char* to) noexcept {
    return failingWithMinusOne("rename", from, to);
}
int remove(const char* path) noexcept {
    return failingWithMinusOne("remove", path);
}
int mkdir(const char* path, mode_t mode) noexcept {
    return failingWithMinusOne("mkdir", path, mode);
}
int stat(const char* path, struct stat* status) noexcept {
    return failingWithMinusOne("stat", path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
    return failingWithMinusOne("lstat", path, status);
}
int access(const char* path, int mode) noexcept {
    return failingWithMinusOne("access", path, mode);
}
int fchmodat(int folder, const char* path, mode_t mode, int flags) noexcept {
    return failingWithMinusOne("fchmodat", folder, path, mode, flags);
}

}  // extern "C"
