#include "orvex/renderer/opengl/window/private/context_lock.h"

namespace orvex {

void ContextLock::lock() {
    std::unique_lock<std::mutex> guard(mutex);
    const std::thread::id caller = std::this_thread::get_id();
    free.wait(guard, [&] { return depth == 0 || owner == caller; });
    owner = caller;
    ++depth;
}

bool ContextLock::unlock() {
    {
        const std::lock_guard<std::mutex> guard(mutex);
        if (depth == 0 || owner != std::this_thread::get_id())
            return false;
        --depth;
    }
    free.notify_one();
    return true;
}

} // namespace orvex
