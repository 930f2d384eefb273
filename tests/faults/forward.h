#pragma once

/// @file
/// Handing a call on to the library that this program stands before.

#include <dlfcn.h>

#define ORVEX_EXPORT __attribute__((visibility("default")))

namespace orvex_test {

/// The function of that name behind this program's own.
/// @param keep  where it is kept from one call to the next
template<class Function>
Function next_of(Function& keep, const char* name) {
    if (!keep)
        keep = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
    return keep;
}

} // namespace orvex_test

/// Inside a function that stands before another of the same name: that other one.
#define ORVEX_NEXT(name)                                                                           \
    ([]() {                                                                                        \
        static decltype(&::name) keep = nullptr;                                                   \
        return orvex_test::next_of(keep, #name);                                                   \
    }())
