#pragma once

/// @file
/// How operations refuse what they are called with, and what becomes of it at the border to C.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include <orvex_kit/outcome.h>

#include "orvex_c/orvex.h"

namespace orvex::c {

namespace kit = orvex::kit; // also for those who name this namespace alone

/// Thrown within the library: an operation ends, and its result is told.
struct Refusal {
    orvex_result result;
    std::string sentence;
};

[[noreturn]] void refuse(orvex_result result, std::string sentence);
/// An argument that can't be: "width is -3: it goes from 1".
[[noreturn]] void refuse_argument(const char* name, const std::string& value, const char* rule);

/// A number as sentences tell it.
std::string number_text(double number);

/// Refuses a failure of the kit's.
inline void require(const kit::Outcome& outcome, orvex_result result) {
    if (!outcome)
        refuse(result, outcome.reason());
}
void require_pointer(const void* pointer, const char* name);
void require_finite(const double* numbers, std::size_t count, const char* name);
void require_finite(const float* numbers, std::size_t count, const char* name);
void require_range(double number, double least, double most, const char* name);
void require_index(std::size_t index, std::size_t count);
/// An enumeration's number, from 0 to its last.
void require_choice(std::int32_t number, std::int32_t last, const char* name);
/// 0 or 1.
bool flag_of(std::int32_t number, const char* name);
/// Sides of a picture, from 1.
void require_sides(std::int32_t width, std::int32_t height);
/// A string, or nothing for null.
inline std::string text_or_nothing(const char* text) {
    return text ? text : "";
}

/// What the last call on this thread was answered with.
void forget_error() noexcept;
orvex_result remember_error(orvex_result result, const char* sentence) noexcept;

/// Runs an operation, and makes a result of whatever it throws.
template<class Work>
orvex_result guarded(Work work) noexcept {
    forget_error();
    try {
        work();
        return ORVEX_OK;
    } catch (const Refusal& refusal) {
        return remember_error(refusal.result, refusal.sentence.c_str());
    } catch (const std::bad_alloc&) {
        return remember_error(ORVEX_ERROR_MEMORY, "there isn't enough memory");
    } catch (const std::exception& mistake) {
        return remember_error(ORVEX_ERROR_INTERNAL, mistake.what());
    } catch (...) {
        return remember_error(ORVEX_ERROR_INTERNAL, "something was thrown that has no name");
    }
}

} // namespace orvex::c
