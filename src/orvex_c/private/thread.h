#pragma once

/// @file
/// What each thread has for itself.

#include <cstdint>
#include <string>
#include <vector>

#include <orvex/renderer/render_window.h>

namespace orvex::c {

/// What each call looks at. It stands ready from a thread's begin on, without a look whether it
/// does.
struct Thread {
    std::uint64_t number = 0;    ///< of its own, from 1, never used again; 0: not asked for yet
    bool is_in_callback = false; ///< the host's, called from here
    const char* sentence = "";   ///< of the last error
};
extern thread_local constinit Thread this_thread;

/// The number of the calling thread.
std::uint64_t number_of_thread();

/// What the calling thread keeps for sentences and lists, until it ends.
struct ThreadStore {
    std::string error;                        ///< the last sentence that there was memory for
    std::vector<RenderWindow_Device> devices; ///< as found by the last count
};
ThreadStore& store_of_thread();

/// Marks that the host's callback runs.
class InCallback {
public:
    InCallback()
        : before(this_thread.is_in_callback) {
        this_thread.is_in_callback = true;
    }
    ~InCallback() { this_thread.is_in_callback = before; }
    InCallback(const InCallback&) = delete;
    InCallback& operator=(const InCallback&) = delete;

private:
    bool before;
};

} // namespace orvex::c
