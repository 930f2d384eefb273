// A slot is in one of four states. `unused` belongs to nobody, `held` to a name and may be read by
// a handler, `busy` is being changed by the name's own thread, `taken` was found by a handler,
// which removes the file; then the process ends. Slots hang in a list that only grows.

#include "orvex_kit/private/new_file_name.h"

#include <array>
#include <atomic>
#include <climits>
#include <memory>

#include <sys/poll.h>
#include <unistd.h>

namespace orvex::kit {

namespace {

enum class State { unused, held, busy, taken };

constexpr std::array ending_signals = {SIGINT, SIGTERM, SIGHUP};

} // namespace

struct NameSlot {
    std::atomic<State> state = State::busy;
    pid_t process = 0;
    char name[PATH_MAX] = "";
    NameSlot* next = nullptr;

    bool change(State from, State to) { return state.compare_exchange_strong(from, to); }
};

namespace {

std::atomic<NameSlot*> slots = nullptr;
/// A handler looks through the slots, after which the process ends.
std::atomic<bool> is_ending = false;

static_assert(std::atomic<State>::is_always_lock_free &&
              std::atomic<NameSlot*>::is_always_lock_free);

/// A slot of its own, which is busy.
NameSlot* take_slot() {
    for (NameSlot* slot = slots; slot; slot = slot->next)
        if (slot->change(State::unused, State::busy))
            return slot;
    auto fresh = std::make_unique<NameSlot>();
    fresh->next = slots;
    while (!slots.compare_exchange_weak(fresh->next, fresh.get())) {
        // another one came first
    }
    return fresh.release(); // the list has it
}

/// Waits for a thread that is between a file and its name, which is never the handler's own.
void remove_file_of(NameSlot& slot) {
    while (slot.state == State::busy)
        poll(nullptr, 0, 1);
    if (slot.change(State::held, State::taken) && slot.process == getpid() && slot.name[0] != '\0')
        unlink(slot.name);
}

/// Runs as a handler: the signal that it raises arrives when it has returned.
void remove_all_and_end(int signal) {
    is_ending = true;
    for (NameSlot* slot = slots; slot; slot = slot->next)
        remove_file_of(*slot);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

} // namespace

NewFileName::~NewFileName() {
    if (!slot)
        return;
    { Change(*this).clear(); }
    slot->change(State::held, State::unused);
}

namespace {

/// Holds the ending signals off. @return those that were before
sigset_t block_ending_signals() {
    sigset_t ours, before;
    sigemptyset(&ours);
    for (const int signal : ending_signals)
        sigaddset(&ours, signal);
    pthread_sigmask(SIG_BLOCK, &ours, &before);
    return before;
}

} // namespace

NewFileName::Change::Change(NewFileName& name)
    : owner(name)
    , before(block_ending_signals()) {
    // Not if a handler has it: the process ends.
    has_slot = owner.slot && owner.slot->change(State::held, State::busy);
    if (!owner.slot) {
        try {
            owner.slot = take_slot();
        } catch (...) {
            pthread_sigmask(SIG_SETMASK, &before, nullptr);
            throw;
        }
        has_slot = true;
    }
    if (!is_ending)
        return;
    // No file is made that the handler could miss.
    if (has_slot)
        owner.slot->state = State::held;
    while (is_ending)
        poll(nullptr, 0, 10);
}

NewFileName::Change::~Change() {
    if (has_slot)
        owner.slot->state = State::held;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void NewFileName::Change::set(const std::string& name) {
    owner.name = name;
    owner.process = getpid();
    if (!has_slot)
        return;
    owner.slot->process = owner.process;
    const bool fits = name.size() < sizeof(owner.slot->name);
    owner.slot->name[fits ? name.copy(owner.slot->name, name.size()) : 0] = '\0';
}

bool NewFileName::is_ours() const {
    return process == getpid();
}

void listen_for_ending_signals() {
    for (const int signal : ending_signals) {
        struct sigaction present {};
        sigaction(signal, nullptr, &present);
        if ((present.sa_flags & SA_SIGINFO) == 0 && present.sa_handler == SIG_DFL)
            std::signal(signal, remove_all_and_end);
    }
}

} // namespace orvex::kit
