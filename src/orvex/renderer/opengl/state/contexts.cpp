#include "orvex/renderer/opengl/state/private/contexts.h"

#include <atomic>
#include <map>

namespace orvex::contexts {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<const void*, std::shared_ptr<ContextState>> by_native;
    ContextNumber last_number = 0;

    std::shared_ptr<ContextState> enter(const void* native, bool made_here,
                                        std::shared_ptr<ShareGroup> group) {
        auto state = std::make_shared<ContextState>(++last_number, made_here, std::move(group));
        by_native[native] = state;
        return state;
    }

    std::shared_ptr<ShareGroup> new_group(bool made_here) {
        return std::make_shared<ShareGroup>(++last_number, made_here);
    }
};

/// Never destroyed: a host's static object may end a window after everything else.
Registry& registry() {
    static Registry* const instance = new Registry;
    return *instance;
}

std::atomic<unsigned long> change_count = 0;

} // namespace

unsigned long changes() {
    return change_count;
}

void switched() {
    ++change_count;
}

void made(const void* native, const void* share) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    const auto sharing = all.by_native.find(share);
    const bool shares = share && sharing != all.by_native.end();
    all.enter(native, true, shares ? sharing->second->group : all.new_group(true));
    ++change_count;
}

void adopted(const void* native) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    const auto known = all.by_native.find(native);
    if (known != all.by_native.end() && known->second->made_here)
        return;
    all.enter(native, false, all.new_group(false));
    ++change_count;
}

void ended(const void* native) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    all.by_native.erase(native);
    ++change_count;
}

std::shared_ptr<ContextState> of(const void* native) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    const auto known = all.by_native.find(native);
    return known != all.by_native.end() ? known->second
                                        : all.enter(native, false, all.new_group(false));
}

std::shared_ptr<ContextState> find(ContextNumber number) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    for (const auto& [native, state] : all.by_native)
        if (state->number == number)
            return state;
    return nullptr;
}

std::shared_ptr<ShareGroup> find_group(ContextNumber number) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    for (const auto& [native, state] : all.by_native)
        if (state->group->number == number)
            return state->group;
    return nullptr;
}

namespace {

void append(std::vector<GLuint>& to, const std::vector<GLuint>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

} // namespace

void bury(ContextNumber number, const BuriedObjects& objects) {
    const std::shared_ptr<ShareGroup> group = find_group(number);
    if (!group)
        return;
    const std::lock_guard<std::mutex> guard(group->mutex);
    append(group->buried.buffers, objects.buffers);
    append(group->buried.textures, objects.textures);
    append(group->buried.shaders, objects.shaders);
    append(group->buried.programs, objects.programs);
    ++change_count;
}

void bury_array(ContextNumber number, GLuint id) {
    const std::shared_ptr<ContextState> context = find(number);
    if (!context)
        return;
    const std::lock_guard<std::mutex> guard(context->group->mutex);
    context->buried_arrays.push_back(id);
    ++change_count;
}

} // namespace orvex::contexts
