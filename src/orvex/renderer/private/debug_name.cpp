#include "orvex/renderer/private/debug_name.h"

#include <utility>

namespace orvex {

namespace {

thread_local const char* current_name = nullptr;

} // namespace

std::atomic<bool> DebugName::wanted{false};

const char* DebugName::current() {
    return current_name;
}

const char* DebugName::exchange(const char* name) {
    return std::exchange(current_name, name);
}

} // namespace orvex
