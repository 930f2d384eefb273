#include "orvex/renderer/opengl/window/private/context_lock.h"

#include <map>

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

std::shared_ptr<ContextLock> context_lock_of(const void* native) {
    static std::mutex mutex;
    static std::map<const void*, std::weak_ptr<ContextLock>> locks;
    const std::lock_guard<std::mutex> guard(mutex);
    std::erase_if(locks, [](const auto& entry) { return entry.second.expired(); });
    std::weak_ptr<ContextLock>& known = locks[native];
    std::shared_ptr<ContextLock> lock = known.lock();
    if (!lock) {
        lock = std::make_shared<ContextLock>();
        known = lock;
    }
    return lock;
}

} // namespace orvex
