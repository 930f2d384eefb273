// The table of handles. A handle is the place of its thing in the table, and how often that place
// was taken: whatever else somebody hands in finds nothing there.

#include "orvex_c/private/handles.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

#include <pthread.h>

#include "orvex_c/private/thread.h"

namespace orvex::c {

namespace {

using Word = std::uintptr_t;
constexpr int half = std::numeric_limits<Word>::digits / 2;
constexpr Word low_half = (Word{1} << half) - 1;

struct Slot {
    std::unique_ptr<Thing> thing; ///< null: free
    Word turn = 0;                ///< how often it was taken
};

struct Table {
    std::atomic<std::uint64_t> owner{0}; ///< the engine's thread; 0: no engine
    std::atomic<bool> has_driver{false}; ///< a view was made in this process, or devices listed
    std::atomic<bool> is_forked{false};  ///< this process came off while an engine ran
    std::atomic<bool> is_behind{false};  ///< it came off after the driver had started
    std::vector<Slot> slots;             ///< the owner's
    std::vector<std::size_t> free;       ///< places in it, with room for all
};

/// Never destroyed: hosts may end things while they end themselves.
Table& table() {
    static Table* const only = new Table;
    return *only;
}

void note_fork() {
    table().is_forked = table().is_forked || table().owner != 0;
    table().is_behind = table().is_behind || table().has_driver;
}

void watch_forks() {
    static const bool is_watched = pthread_atfork(nullptr, nullptr, note_fork) == 0;
    static_cast<void>(is_watched);
}

} // namespace

void require_own_process() {
    if (table().is_forked.load(std::memory_order_relaxed))
        refuse(ORVEX_ERROR_FORK,
               "this process was forked off while an engine ran, which belongs to "
               "its parent: fork before the start, or run another program");
    if (table().is_behind.load(std::memory_order_relaxed))
        refuse(ORVEX_ERROR_FORK,
               "this process was forked off after the driver had started, whose threads stayed "
               "with its parent: fork before views are made and devices listed, or run another "
               "program");
}

void require_no_fork() {
    require_own_process();
    if (this_thread.is_in_callback)
        refuse(ORVEX_ERROR_CALLBACK, "a log callback can't call back: let it keep the line");
}

void require_caller() {
    require_no_fork();
    const std::uint64_t owner = table().owner.load(std::memory_order_acquire);
    if (owner != 0 && owner != number_of_thread())
        refuse(ORVEX_ERROR_THREAD,
               "the engine belongs to the thread that started it, and this is another");
}

void claim_engine() {
    require_no_fork();
    watch_forks();
    std::uint64_t nobody = 0;
    if (!table().owner.compare_exchange_strong(nobody, number_of_thread()))
        refuse(ORVEX_ERROR_ENGINE,
               std::string("an engine runs already, on ") +
                   (nobody == number_of_thread() ? "this thread" : "another thread") +
                   ": a process has one at a time");
}

void note_driver() {
    watch_forks();
    table().has_driver.store(true, std::memory_order_relaxed);
}

void give_up_engine() noexcept {
    table().owner.store(0, std::memory_order_release);
}

void* keep(std::unique_ptr<Thing> thing) {
    std::vector<Slot>& slots = table().slots;
    std::vector<std::size_t>& free = table().free;
    if (free.empty()) {
        if (slots.size() == low_half)
            throw std::bad_alloc();
        free.reserve(slots.size() + 1);
        slots.emplace_back();
        free.push_back(slots.size() - 1);
    }
    const std::size_t place = free.back();
    free.pop_back();
    Slot& slot = slots[place];
    slot.thing = std::move(thing);
    ++slot.turn;
    return reinterpret_cast<void*>(slot.turn << half | (place + 1));
}

namespace {

Slot& slot_of(const void* handle, const char* name) {
    if (!handle)
        refuse(ORVEX_ERROR_HANDLE, std::string("the handle of the ") + name + " is null");
    require_caller();
    const auto word = reinterpret_cast<Word>(handle);
    const Word place = (word & low_half) - 1;
    std::vector<Slot>& slots = table().slots;
    if (table().owner == 0 || place >= slots.size() || slots[place].turn != word >> half ||
        !slots[place].thing)
        refuse(ORVEX_ERROR_HANDLE,
               std::string("the handle of the ") + name +
                   " is none: it has ended, its engine was stopped, or it never "
                   "was one");
    return slots[place];
}

} // namespace

Thing& thing_of(const void* handle, const char* name) {
    return *slot_of(handle, name).thing;
}

void refuse_kind(const char* name) {
    refuse(ORVEX_ERROR_HANDLE,
           std::string("the handle is none of a ") + name + ", but of another kind");
}

namespace {

/// Ends a thing. Its place is taken again, unless its turns are used up.
void end_thing(Slot& slot) noexcept {
    slot.thing.reset();
    if (slot.turn < low_half)
        table().free.push_back(static_cast<std::size_t>(&slot - table().slots.data()));
}

void end_kind(Kind kind) noexcept {
    for (Slot& slot : table().slots)
        if (slot.thing && slot.thing->kind == kind)
            end_thing(slot);
}

} // namespace

void end_handle(const void* handle) {
    end_thing(slot_of(handle, "thing"));
}

void end_texts_of(const ViewThing& view) {
    for (Slot& slot : table().slots)
        if (slot.thing && slot.thing->kind == Kind::text &&
            &static_cast<TextThing&>(*slot.thing).view == &view)
            end_thing(slot);
}

void end_all_handles() noexcept {
    // What is on the GPU is given back while the views are there.
    for (const Kind kind : {Kind::text, Kind::model, Kind::view, Kind::engine})
        end_kind(kind);
}

std::vector<kit::Model*> models_of(const orvex_model* handles, std::size_t count) {
    if (count == 0)
        require_caller(); // as handles would
    else
        require_pointer(handles, "models");
    if (count > low_half)
        refuse_argument("count", std::to_string(count), "there are no so many models");
    std::vector<kit::Model*> models;
    models.reserve(std::min<std::size_t>(count, 64));
    for (std::size_t i = 0; i < count; ++i)
        models.push_back(&model_of(handles[i]).model);
    return models;
}

} // namespace orvex::c
