#pragma once

#include <cstddef>

/// @file
/// The one fault that a run of a scenario meets. The functions that this program defines in place
/// of the system's ask here whether this call is the one to fail.
///
/// Only what is asked for the engine counts: calls whose return address lies in its library or in
/// lib3ds, and allocations that the standard library and TinyXML-2 make for it. The driver, the C
/// library and the scenarios themselves always get what they ask for.

namespace orvex_test {

enum class FaultKind {
    memory,      ///< an allocation that is refused
    system,      ///< a system call that fails
    short_count, ///< a read or a write that does half of what it was asked for
    graphics,    ///< something that OpenGL or EGL doesn't make
};

inline constexpr unsigned long never = static_cast<unsigned long>(-1);

/// Finds where the libraries lie. Once, before the first fault.
void find_engine();

/// Whether a call that returns here is the engine's own.
bool is_engine(const void* return_address);

/// Whether an allocation that returns here is made for the engine, be it by a library in between.
bool is_for_engine(const void* return_address);

/// From now on calls of a kind are counted, and the one of this number, from 0 on, fails.
void arm_fault(FaultKind kind, unsigned long n);
/// No more faults.
/// @return how many calls of the kind were counted
unsigned long disarm_fault();
/// How many calls of the kind were counted since `arm_fault`.
unsigned long calls_counted();
/// Whether the call of that number was met since `arm_fault`.
bool fault_was_met();
/// The name of the function that failed; empty before.
const char* failed_function();
/// Where the call that failed returns to.
const void* failed_place();

/// Counts one call, made for the engine.
/// @return whether it is the one to fail
bool is_to_fail(FaultKind kind, const char* function, const void* return_address);

/// A block of memory that was taken for the engine and not given back.
struct LivingBlock {
    const void* block;
    const void* place; ///< the return address of the call
    std::size_t size;
    unsigned long serial; ///< in the order of taking
};

/// Blocks that the engine holds now.
unsigned long living_engine_blocks();
/// The number that the next block of the engine gets.
unsigned long next_block_serial();
/// Fills an array with the oldest living blocks from a serial on.
/// @return how many were found
std::size_t find_living_blocks(unsigned long first_serial, LivingBlock* blocks, std::size_t room);

/// Objects of OpenGL that the engine made and did not delete.
unsigned long living_gl_objects();
/// Contexts and surfaces of EGL that the engine made and did not destroy.
unsigned long living_egl_objects();
/// Forgets them, after a leak was told.
void forget_gl_objects();
/// The kinds of OpenGL objects that are left, as text.
const char* names_of_gl_objects();

/// Whether an address lies in TinyXML-2, which loses a block of its own when its list of blocks
/// finds no memory to grow.
bool is_tinyxml(const void* address);

/// An address as library and offset, for addr2line.
const char* place_text(const void* address);

} // namespace orvex_test
