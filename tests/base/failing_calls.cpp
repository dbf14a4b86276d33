// The C library's checking versions of these calls would be in the way.
#undef _FORTIFY_SOURCE

#include "base/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
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
using kestrel::test::plan;
using kestrel::test::writesShort;

extern "C" {

int openat(int folder, const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return failingWithMinusOne("openat", folder, path, flags, mode);
}

ssize_t write(int file, const void* bytes, std::size_t count) {
    static auto* const real = next<ssize_t(int, const void*, std::size_t)>("write");
    const auto half = [&] { return real(file, bytes, count / 2); };
    // Without an error a short write is a success that wants to be gone on with.
    const auto failing = [&] {
        const ssize_t written = writesShort() ? half() : 0;
        return plan->error == 0 ? written : -1;
    };
    return call(
        "write", [&] { return real(file, bytes, count); }, failing, half);
}

int close(int file) {
    static auto* const real = next<int(int)>("close");
    const auto failing = [&] {
        real(file);
        return -1;
    };
    return call(
        "close", [&] { return real(file); }, failing);
}

int fsync(int file) {
    return failingWithMinusOne("fsync", file);
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    return failingWithMinusOne("renameat", fromFolder, from, toFolder, to);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
    return failingWithMinusOne("unlinkat", folder, path, flags);
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
int fstat(int file, struct stat* status) noexcept {
    return failingWithMinusOne("fstat", file, status);
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
    return failingWithMinusOne("fstatat", folder, path, status, flags);
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
    return failingWithMinusOne("faccessat", folder, path, mode, flags);
}
int fchmod(int file, mode_t mode) noexcept {
    return failingWithMinusOne("fchmod", file, mode);
}

}  // extern "C"
