#include "orvex_formats/import/program/confinement.h"

#include <cerrno>
#include <csignal>
#include <initializer_list>

#include <fcntl.h>
#include <linux/landlock.h>
#include <linux/openat2.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#ifdef ORVEX_WITH_SECCOMP
#include <seccomp.h>
#endif

namespace orvex::formats {

// --- Limits -----------------------------------------------------------------------------------

void set_limits(const Limits& limits) {
    const auto set = [](__rlimit_resource resource, std::uint64_t most) {
        const rlimit both = {most, most};
        static_cast<void>(setrlimit(resource, &both));
    };
    constexpr std::uint64_t most_files = 16;
    set(RLIMIT_AS, limits.most_memory);
    set(RLIMIT_CPU, limits.seconds);
    set(RLIMIT_FSIZE, limits.most_answer);
    set(RLIMIT_NOFILE, most_files);
    set(RLIMIT_CORE, 0);
    set(RLIMIT_NPROC, 0);
    static_cast<void>(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0));
    static_cast<void>(prctl(PR_SET_DUMPABLE, 0, 0, 0, 0));
    static_cast<void>(prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0));
}

// --- Files ------------------------------------------------------------------------------------

namespace {

/// All rights to files that a kernel knows.
std::uint64_t rights_of(long version) {
    std::uint64_t rights = (std::uint64_t{1} << 13) - 1;
    if (version >= 2)
        rights |= std::uint64_t{1} << 13; // to link from folder to folder
    if (version >= 3)
        rights |= std::uint64_t{1} << 14; // to truncate
    return rights;
}

} // namespace

bool confine_files(int folder) {
    const long version =
        syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return false;
    landlock_ruleset_attr barred{};
    barred.handled_access_fs = rights_of(version);
    const auto rules = static_cast<int>(
        syscall(SYS_landlock_create_ruleset, &barred, sizeof barred.handled_access_fs, 0));
    if (rules < 0)
        return false;
    landlock_path_beneath_attr allowed{};
    allowed.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE;
    allowed.parent_fd = folder;
    const bool is_set = (folder < 0 || syscall(SYS_landlock_add_rule, rules,
                                               LANDLOCK_RULE_PATH_BENEATH, &allowed, 0) == 0) &&
                        syscall(SYS_landlock_restrict_self, rules, 0) == 0;
    close(rules);
    return is_set;
}

// --- Calls ------------------------------------------------------------------------------------

#ifdef ORVEX_WITH_SECCOMP

bool confine_calls(bool may_open) {
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
    if (!filter)
        return false;
    bool is_right = true;
    const auto allow = [&](int call) {
        is_right = is_right && seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0) == 0;
    };
    for (const int call :
         {SCMP_SYS(read),          SCMP_SYS(pread64),         SCMP_SYS(readv),
          SCMP_SYS(lseek),         SCMP_SYS(write),           SCMP_SYS(pwrite64),
          SCMP_SYS(writev),        SCMP_SYS(close),           SCMP_SYS(fstat),
          SCMP_SYS(brk),           SCMP_SYS(munmap),          SCMP_SYS(mremap),
          SCMP_SYS(madvise),       SCMP_SYS(futex),           SCMP_SYS(sched_yield),
          SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday),    SCMP_SYS(time),
          SCMP_SYS(getrandom),     SCMP_SYS(getpid),          SCMP_SYS(gettid),
          SCMP_SYS(tgkill),        SCMP_SYS(rt_sigaction),    SCMP_SYS(rt_sigprocmask),
          SCMP_SYS(rt_sigreturn),  SCMP_SYS(restart_syscall), SCMP_SYS(exit),
          SCMP_SYS(exit_group)})
        allow(call);
    const auto allow_with = [&](int call, const scmp_arg_cmp& argument) {
        is_right =
            is_right && seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call, 1, &argument) == 0;
    };
    // What is mapped is never code, and never becomes any.
    constexpr scmp_datum_t executable = 4;
    for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mprotect)})
        allow_with(call, {2, SCMP_CMP_MASKED_EQ, executable, 0});
    // The standard library tells the sizes of open files by it.
    allow_with(SCMP_SYS(newfstatat), {3, SCMP_CMP_EQ, AT_EMPTY_PATH, 0});
    if (may_open)
        allow(SCMP_SYS(openat2));
    is_right = is_right && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return is_right;
}

#else

bool confine_calls(bool) {
    return false;
}

#endif

// --- Whether it holds -------------------------------------------------------------------------

std::string tell_confinement() {
    std::string told;
    const auto tell = [&told](const char* what, bool works) {
        told += std::string(told.empty() ? "" : ", ") + what + (works ? " open" : " barred");
    };
    // By the one call that opens files here.
    const auto opens = [](const char* name, std::uint64_t flags) {
        open_how how{};
        how.flags = flags | O_CLOEXEC;
        return syscall(SYS_openat2, AT_FDCWD, name, &how, sizeof how) >= 0;
    };
    tell("reading", opens("/etc/passwd", O_RDONLY));
    tell("writing", opens("/dev/null", O_WRONLY));
    tell("network", socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) >= 0);
    tell("sockets", socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0) >= 0);
    const long process = syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr);
    if (process == 0)
        _exit(0);
    tell("processes", process > 0);
    // A name that leads to no program: what bars the call doesn't look at it.
    char name[] = "/", *const none[] = {name, nullptr};
    execve(name, none, none);
    tell("programs", errno != EPERM);
    return told;
}

} // namespace orvex::formats
