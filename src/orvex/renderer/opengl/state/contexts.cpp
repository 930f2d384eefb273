#include "orvex/renderer/opengl/state/private/contexts.h"

#include <atomic>
#include <cstddef>
#include <map>
#include <new>

#include "orvex/base/private/memory_out.h"
#include "orvex/renderer/opengl/state/private/context_mark.h"

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

    /// One that isn't known is a host's.
    std::shared_ptr<ContextState> met(const void* native) {
        const auto known = by_native.find(native);
        return known != by_native.end() ? known->second
                                        : enter(native, false, new_group(Kinship::unknown));
    }

    std::shared_ptr<ShareGroup> new_group(Kinship kinship) {
        return std::make_shared<ShareGroup>(++last_number, kinship);
    }

    /// The group of a host's context that is current: the one whose mark it sees, or a new one.
    /// @param likely  is looked for first; may be null
    std::shared_ptr<ShareGroup> group_here(const std::shared_ptr<ShareGroup>& likely) {
        if (likely && has_group_mark(likely->mark, likely->number))
            return likely;
        for (const auto& [native, state] : by_native)
            if (has_group_mark(state->group->mark, state->group->number))
                return state->group;
        return new_group(Kinship::unknown);
    }
};

/// Never destroyed: a host's static object may end a window after everything else. It needs no
/// memory of its own, so that a window can always say what it made.
Registry& registry() {
    alignas(Registry) static std::byte storage[sizeof(Registry)];
    static Registry* const instance = new (storage) Registry;
    return *instance;
}

/// Of the current context, which may be marked already.
void mark_group(ShareGroup& group) {
    if (group.mark == 0)
        group.mark = leave_group_mark(group.number);
    if (group.mark != 0)
        group.kinship = Kinship::mark;
}

} // namespace

std::atomic<unsigned long> change_count = 0;

void switched() {
    ++change_count;
}

void made(const void* native, const void* share) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    all.by_native.erase(native);
    ++change_count;
    // One that there is no memory for is entered when it is met, as a host's.
    or_false([&] {
        all.enter(native, true, share ? all.met(share)->group : all.new_group(Kinship::windows));
        return true;
    });
}

void adopted(const void* native) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    ++change_count;
    const auto known = all.by_native.find(native);
    std::shared_ptr<ShareGroup> group_before;
    if (known != all.by_native.end()) {
        const ContextState& state = *known->second;
        if (state.made_here || has_context_mark(state.mark, state.number))
            return;
        group_before = state.group;
        all.by_native.erase(known);
    }
    // One that there is no memory for is entered when it is met.
    or_false([&] {
        ContextState& state = *all.enter(native, false, all.group_here(group_before));
        state.mark = leave_context_mark(state.number);
        mark_group(*state.group);
        return true;
    });
}

void ended(const void* native) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    all.by_native.erase(native);
    ++change_count;
}

namespace {

bool has_buried(const BuriedObjects& objects) {
    return !objects.buffers.empty() || !objects.textures.empty() ||
           !objects.render_buffers.empty() || !objects.shaders.empty() || !objects.programs.empty();
}

bool has_buried(const ContextState& state) {
    const std::lock_guard<std::mutex> guard(state.group->mutex);
    return has_buried(state.group->buried) || !state.buried.vertex_arrays.empty() ||
           !state.buried.framebuffers.empty();
}

void forget_buried(ContextState& state) {
    const std::lock_guard<std::mutex> guard(state.group->mutex);
    state.group->buried = {};
    state.buried = {};
}

} // namespace

std::shared_ptr<ContextState> looked_at(const void* native, bool was_elsewhere) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    std::shared_ptr<ContextState> state = all.met(native);
    if (state->made_here || state->lost)
        return state;
    // The names of one that ended may be those of other objects in the next one at its address.
    if (has_buried(*state)) {
        if (state->mark == 0)
            forget_buried(*state);
        else if (!has_context_mark(state->mark, state->number))
            state = all.enter(native, false, all.group_here(state->group));
    }
    // A host that has one context is asked for nothing.
    if (was_elsewhere && state->mark == 0)
        state->mark = leave_context_mark(state->number);
    return state;
}

std::shared_ptr<ContextState> of(const void* native) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.mutex);
    return all.met(native);
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
    // What there is no memory for stays until its context ends.
    or_false([&] {
        append(group->buried.buffers, objects.buffers);
        append(group->buried.textures, objects.textures);
        append(group->buried.render_buffers, objects.render_buffers);
        append(group->buried.shaders, objects.shaders);
        append(group->buried.programs, objects.programs);
        return true;
    });
    ++change_count;
}

namespace {

void bury_in(ContextNumber number, std::vector<GLuint> BuriedContextObjects::*kind, GLuint id) {
    const std::shared_ptr<ContextState> context = find(number);
    if (!context)
        return;
    const std::lock_guard<std::mutex> guard(context->group->mutex);
    or_false([&] {
        (context->buried.*kind).push_back(id);
        return true;
    });
    ++change_count;
}

} // namespace

void bury_array(ContextNumber context, GLuint id) {
    bury_in(context, &BuriedContextObjects::vertex_arrays, id);
}

void bury_framebuffer(ContextNumber context, GLuint id) {
    bury_in(context, &BuriedContextObjects::framebuffers, id);
}

} // namespace orvex::contexts
