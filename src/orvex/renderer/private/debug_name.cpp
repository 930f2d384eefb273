#include "orvex/renderer/private/debug_name.h"

#include <utility>

namespace orvex {

namespace {

thread_local char const* current_name = nullptr;

} // namespace

std::atomic<bool> DebugName::wanted{false};

char const* DebugName::current() {
    return current_name;
}

char const* DebugName::exchange(char const* name) {
    return std::exchange(current_name, name);
}

} // namespace orvex
