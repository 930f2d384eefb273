// Landlock by its system calls, as headers may be older than the system, and a filter of calls by
// libseccomp where the build has it.

#include "batch/confinement.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#ifdef ORVEX_WITH_SECCOMP
#include <seccomp.h>
#endif

#include <orvex_kit/files.h>

namespace batch {

namespace {

// The same on all machines.
constexpr long create_ruleset = 444, add_rule = 445, restrict_self = 446;

/// As the system knows it since its sixth form; earlier ones take the beginning.
struct Ruleset {
    std::uint64_t files;
    std::uint64_t net;
    std::uint64_t scope;
};

struct __attribute__((packed)) FolderRule {
    std::uint64_t allowed;
    std::int32_t folder;
};

// Rights to files, as the system numbers them.
constexpr std::uint64_t execute = 1 << 0, write_file = 1 << 1;
constexpr std::uint64_t change_folders = 0x1ff0; ///< removing and making, bits 4 to 12
constexpr std::uint64_t refer = 1 << 13;         ///< since the second form
constexpr std::uint64_t truncate = 1 << 14;      ///< since the third
constexpr std::uint64_t tcp = 3;                 ///< bind and connect, since the fourth
constexpr std::uint64_t to_others = 3;           ///< abstract sockets and signals, since the sixth

/// An open file that is closed.
class Open {
public:
    explicit Open(int file)
        : file(file) {}
    ~Open() {
        if (file >= 0)
            close(file);
    }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;

    operator int() const { return file; }

private:
    int file;
};

/// Lets a path be used; one that isn't there needs no leave.
bool allow(int ruleset, const char* path, std::uint64_t rights) {
    const Open place(open(path, O_PATH | O_CLOEXEC));
    if (place < 0)
        return errno == ENOENT;
    struct stat status {};
    // Of what is no folder, only the file itself may be spoken.
    if (fstat(place, &status) == 0 && !S_ISDIR(status.st_mode))
        rights &= execute | write_file | truncate;
    const FolderRule rule{rights, place};
    return syscall(add_rule, ruleset, 1, &rule, 0) == 0;
}

Ruleset rules_of(long form) {
    Ruleset rules{execute | write_file | change_folders, 0, 0};
    rules.files |= (form >= 2 ? refer : 0) | (form >= 3 ? truncate : 0);
    rules.net = form >= 4 ? tcp : 0;
    rules.scope = form >= 6 ? to_others : 0;
    return rules;
}

std::size_t size_of_rules(long form) {
    return form >= 6 ? sizeof(Ruleset) : form >= 4 ? 16 : 8;
}

/// Lets a program be executed, and what the system starts it by: the loader of this one.
bool allow_program(int ruleset, const std::string& program) {
    if (program.empty())
        return true;
    Dl_info loader{};
    const auto base = getauxval(AT_BASE);
    return dladdr(reinterpret_cast<const void*>(base), &loader) != 0 &&
           allow(ruleset, loader.dli_fname, execute) && allow(ruleset, program.c_str(), execute);
}

bool restrict_writes(const std::string& folder, const std::string& program) {
    const long form = syscall(create_ruleset, nullptr, 0, 1);
    if (form < 1)
        return false;
    const Ruleset rules = rules_of(form);
    const Open ruleset(static_cast<int>(syscall(create_ruleset, &rules, size_of_rules(form), 0)));
    if (ruleset < 0)
        return false;
    if (!allow(ruleset, folder.empty() ? "." : folder.c_str(), rules.files & ~execute))
        return false;
    for (const char* const device :
         {"/dev/null", "/dev/dri", "/dev/nvidiactl", "/dev/nvidia-modeset", "/dev/nvidia-uvm",
          "/dev/nvidia0", "/dev/nvidia1", "/dev/nvidia2", "/dev/nvidia3", "/dev/nvidia4",
          "/dev/nvidia5", "/dev/nvidia6", "/dev/nvidia7", "/dev/kfd"})
        if (!allow(ruleset, device, write_file))
            return false;
    return allow_program(ruleset, program) &&
           syscall(restrict_self, static_cast<int>(ruleset), 0) == 0;
}

} // namespace

bool confine_writes(const std::string& folder, const std::string& program) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && restrict_writes(folder, program);
}

#ifdef ORVEX_WITH_SECCOMP

namespace {

/// Adds the calls that fail as if they weren't allowed.
bool forbid(scmp_filter_ctx filter) {
    bool is_fine = true;
    for (const int call :
         {SCMP_SYS(socket), SCMP_SYS(socketpair), SCMP_SYS(connect), SCMP_SYS(bind),
          SCMP_SYS(listen), SCMP_SYS(accept), SCMP_SYS(accept4), SCMP_SYS(ptrace),
          SCMP_SYS(process_vm_readv), SCMP_SYS(process_vm_writev), SCMP_SYS(mount),
          SCMP_SYS(umount2), SCMP_SYS(unshare), SCMP_SYS(setns), SCMP_SYS(bpf),
          SCMP_SYS(userfaultfd), SCMP_SYS(io_uring_setup), SCMP_SYS(keyctl)})
        is_fine = is_fine && seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 0) == 0;
    return is_fine;
}

/// Forbids to start processes. @param may_execute  lets those begin that execute at once
bool forbid_processes(scmp_filter_ctx filter, bool may_execute) {
    bool is_fine = true;
    const auto forbid_call = [&](int call) {
        is_fine = is_fine && seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 0) == 0;
    };
    for (const int call : {SCMP_SYS(fork), SCMP_SYS(vfork)})
        forbid_call(call);
    if (!may_execute)
        for (const int call : {SCMP_SYS(execve), SCMP_SYS(execveat)})
            forbid_call(call);
    // Threads may begin, processes may not. What the newer call is asked for can't be seen: the C
    // library takes the older one instead.
    const scmp_datum_t allowed = may_execute ? CLONE_THREAD | CLONE_VFORK : CLONE_THREAD;
    const scmp_arg_cmp is_process{0, SCMP_CMP_MASKED_EQ, allowed, 0};
    is_fine = is_fine && seccomp_rule_add_array(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1,
                                                &is_process) == 0;
    return is_fine && seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0;
}

} // namespace

bool confine_calls(bool may_execute) {
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    if (!filter)
        return false;
    const bool is_loaded = seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1) == 0 &&
                           forbid(filter) && forbid_processes(filter, may_execute) &&
                           seccomp_load(filter) == 0;
    seccomp_release(filter);
    return is_loaded;
}

#else

bool confine_calls(bool) {
    return false;
}

#endif

std::string importer_program() {
    Dl_info kit{};
    // Any operation of the kit's is in its library.
    const auto address = reinterpret_cast<const void*>(&orvex::kit::mistake_in_reading);
    if (dladdr(address, &kit) == 0 || !kit.dli_fname)
        return "";
    const std::string library = kit.dli_fname;
    const std::string program = library.substr(0, library.rfind('/') + 1) + "orvex/orvex-import";
    return access(program.c_str(), X_OK) == 0 ? program : "";
}

} // namespace batch
