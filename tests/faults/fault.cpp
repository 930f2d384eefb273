// Who asks, and whether it is this one's turn to fail.

#include "fault.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <unwind.h>

namespace orvex_test {
namespace {

/// Whose code an address belongs to.
enum class Owner {
    engine,   ///< the engine's library, or lib3ds, which works for it alone
    servant,  ///< a library that allocates for whoever calls it
    stranger, ///< all others
};

struct Range {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    Owner owner = Owner::stranger;
};

std::array<Range, 8> ranges;
std::size_t num_ranges = 0;

Owner owner_by_name(const char* path) {
    for (const char* const name : {"liborvex_r_osx", "lib3ds"})
        if (std::strstr(path, name))
            return Owner::engine;
    for (const char* const name : {"libstdc++", "libtinyxml2"})
        if (std::strstr(path, name))
            return Owner::servant;
    return Owner::stranger;
}

int note_library(dl_phdr_info* library, std::size_t, void*) {
    const Owner owner = owner_by_name(library->dlpi_name);
    if (owner == Owner::stranger || num_ranges == ranges.size())
        return 0;
    Range range{static_cast<std::uintptr_t>(-1), 0, owner};
    for (int i = 0; i < library->dlpi_phnum; ++i) {
        const auto& header = library->dlpi_phdr[i];
        if (header.p_type != PT_LOAD || !(header.p_flags & PF_X))
            continue;
        const std::uintptr_t begin = library->dlpi_addr + header.p_vaddr;
        range.begin = begin < range.begin ? begin : range.begin;
        range.end = begin + header.p_memsz > range.end ? begin + header.p_memsz : range.end;
    }
    ranges[num_ranges++] = range;
    return 0;
}

Owner owner_of(std::uintptr_t address) {
    for (std::size_t i = 0; i < num_ranges; ++i)
        if (address >= ranges[i].begin && address < ranges[i].end)
            return ranges[i].owner;
    return Owner::stranger;
}

/// A walk from an allocation towards `main`, which ends at the first caller that is no servant.
struct Walk {
    bool met_servant = false;
    bool is_engine = false;
};

_Unwind_Reason_Code look_at_frame(_Unwind_Context* context, void* data) {
    Walk& walk = *static_cast<Walk*>(data);
    const Owner owner = owner_of(_Unwind_GetIP(context));
    if (owner == Owner::servant) {
        walk.met_servant = true;
        return _URC_NO_REASON;
    }
    // Before the servant come this program's own frames.
    if (!walk.met_servant)
        return _URC_NO_REASON;
    walk.is_engine = owner == Owner::engine;
    return _URC_END_OF_STACK;
}

/// The unwinder may allocate, and that must not start another walk.
thread_local bool is_walking = false;

struct Plan {
    std::atomic<bool> is_armed = false;
    std::atomic<FaultKind> kind = FaultKind::memory;
    std::atomic<unsigned long> n = never;
    std::atomic<unsigned long> counted = 0;
    std::atomic<bool> is_met = false;
    std::atomic<const char*> function = "";
    std::atomic<const void*> place = nullptr;
};
/// Shared with the parent, which asks for it after a crash.
Plan& plan = *new (
    mmap(nullptr, sizeof(Plan), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Plan;

} // namespace

void find_engine() {
    num_ranges = 0;
    dl_iterate_phdr(note_library, nullptr);
    // What the unwinder makes for good is made now.
    Walk walk;
    _Unwind_Backtrace(look_at_frame, &walk);
}

bool is_engine(const void* return_address) {
    return owner_of(reinterpret_cast<std::uintptr_t>(return_address)) == Owner::engine;
}

bool is_for_engine(const void* return_address) {
    const Owner owner = owner_of(reinterpret_cast<std::uintptr_t>(return_address));
    if (owner != Owner::servant || is_walking)
        return owner == Owner::engine;
    is_walking = true;
    Walk walk;
    _Unwind_Backtrace(look_at_frame, &walk);
    is_walking = false;
    return walk.is_engine;
}

void arm_fault(FaultKind kind, unsigned long n) {
    plan.kind = kind;
    plan.n = n;
    plan.counted = 0;
    plan.is_met = false;
    plan.function = "";
    plan.place = nullptr;
    plan.is_armed = true;
}

unsigned long disarm_fault() {
    plan.is_armed = false;
    return plan.counted;
}

unsigned long calls_counted() {
    return plan.counted;
}

bool fault_was_met() {
    return plan.is_met;
}

const char* failed_function() {
    return plan.function;
}

const void* failed_place() {
    return plan.place;
}

bool is_to_fail(FaultKind kind, const char* function, const void* return_address) {
    if (!plan.is_armed || plan.kind != kind || plan.counted++ != plan.n)
        return false;
    plan.function = function;
    plan.place = return_address;
    plan.is_met = true;
    return true;
}

bool is_tinyxml(const void* address) {
    Dl_info info{};
    return address && dladdr(address, &info) && info.dli_fname &&
           std::strstr(info.dli_fname, "libtinyxml2");
}

const char* place_text(const void* address) {
    static char text[512];
    Dl_info info{};
    if (!address || !dladdr(address, &info) || !info.dli_fname)
        return "?";
    const char* const slash = std::strrchr(info.dli_fname, '/');
    const auto offset = reinterpret_cast<std::uintptr_t>(address) -
                        reinterpret_cast<std::uintptr_t>(info.dli_fbase);
    std::snprintf(text, sizeof text, "%s+0x%zx (%s)", slash ? slash + 1 : info.dli_fname,
                  static_cast<std::size_t>(offset), info.dli_sname ? info.dli_sname : "?");
    return text;
}

} // namespace orvex_test
