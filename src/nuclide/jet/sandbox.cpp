#include "nuclide/jet/sandbox.h"

#if defined(__unix__)
#include <sys/resource.h>
#include <unistd.h>
#endif
#if defined(__linux__)
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#endif

namespace kestrel::jet {
namespace {

#if defined(__unix__)
void limit(int resource, rlim_t most) {
    const rlimit limits{most, most};
    setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

// What a file of the greatest size that Access allows does not need.
void limitResources() {
    constexpr rlim_t cpuSeconds = 20;
    limit(RLIMIT_CPU, cpuSeconds);
    limit(RLIMIT_CORE, 0);
    // The output is a pipe, which this does not count for.
    limit(RLIMIT_FSIZE, 0);
#if !defined(KESTREL_SANITIZED)
    // The address sanitizer reserves far more than this for itself.
    constexpr rlim_t memory = rlim_t{2} << 30U;
    limit(RLIMIT_AS, memory);
#endif
}
#endif

#if defined(__linux__)
void closeHandles() {
    syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, 0);
}

// No file is written, made, removed, renamed or run; reading stays.
void denyWriting() {
    landlock_ruleset_attr rules{};
    rules.handled_access_fs =
        LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
        LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
        LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK |
        LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;
    const long handle = syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0);
    if (handle < 0)
        return;
    syscall(SYS_landlock_restrict_self, handle, 0);
    close(static_cast<int>(handle));
}

#if !defined(KESTREL_SANITIZED)
#if defined(__x86_64__)
constexpr unsigned machine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned machine = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned machine = 0;
#endif

constexpr std::array forbiddenCalls = {
    SYS_socket,   SYS_socketpair,   SYS_connect,        SYS_bind,
    SYS_execve,   SYS_execveat,     SYS_clone,          SYS_clone3,
    SYS_ptrace,   SYS_kill,         SYS_tkill,          SYS_process_vm_writev,
    SYS_unlinkat, SYS_linkat,       SYS_symlinkat,      SYS_renameat2,
    SYS_fchmod,   SYS_fchmodat,     SYS_fchownat,       SYS_mount,
    SYS_unshare,  SYS_setns,        SYS_keyctl,         SYS_bpf,
    SYS_truncate, SYS_ftruncate,    SYS_openat2,        SYS_mkdirat,
    SYS_mknodat,  SYS_memfd_create, SYS_io_uring_setup, SYS_perf_event_open,
#if defined(__x86_64__)
    SYS_fork,     SYS_vfork,        SYS_unlink,         SYS_rename,
    SYS_renameat, SYS_link,         SYS_symlink,        SYS_chmod,
    SYS_chown,    SYS_open,         SYS_creat,          SYS_mkdir,
    SYS_rmdir,    SYS_mknod,
#endif
};

constexpr unsigned writing = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;

// A forbidden call fails as one without permission, and so does the opening of a file for more than
// reading; calls of another machine's numbers end the process.
void denyCalls() {
    constexpr std::size_t others = 9;
    std::array<sock_filter, others + 2 * forbiddenCalls.size()> program{};
    std::size_t next = 0;
    const auto put = [&](unsigned code, unsigned value, unsigned char yes, unsigned char no) {
        program.at(next++) = {static_cast<unsigned short>(code), yes, no, value};
    };
    put(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch), 0, 0);
    put(BPF_JMP | BPF_JEQ | BPF_K, machine, 1, 0);
    put(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS, 0, 0);
    put(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr), 0, 0);
    for (const auto call : forbiddenCalls) {
        put(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1);
        put(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM, 0, 0);
    }
    put(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3);
    put(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args) + 2 * sizeof(std::uint64_t), 0, 0);
    put(BPF_JMP | BPF_JSET | BPF_K, writing, 0, 1);
    put(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM, 0, 0);
    put(BPF_RET | BPF_K, SECCOMP_RET_ALLOW, 0, 0);
    const sock_fprog filter{static_cast<unsigned short>(next), program.data()};
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}
#endif
#endif

}  // namespace

void enterSandbox() {
#if defined(__unix__)
    limitResources();
#endif
#if defined(__linux__)
    closeHandles();
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    denyWriting();
#if !defined(KESTREL_SANITIZED)
    // The sanitizers start a process of their own at the end.
    if (machine != 0)
        denyCalls();
#endif
#endif
}

}  // namespace kestrel::jet
