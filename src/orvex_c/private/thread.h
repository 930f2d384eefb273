#pragma once

/// @file
/// What each thread has for itself.

#include <cstdint>
#include <string>
#include <vector>

#include <orvex/renderer/render_window.h>

namespace orvex::c {

/// Of the calling thread, until it ends.
struct Thread {
    std::uint64_t number = 0;                 ///< of its own, from 1, never used again
    bool is_in_callback = false;              ///< the host's, called from here
    const char* sentence = "";                ///< of the last error
    std::string error;                        ///< that sentence, unless memory ran out for it
    std::vector<RenderWindow_Device> devices; ///< as found by the last count
};
Thread& this_thread();

/// Marks that the host's callback runs.
class InCallback {
public:
    InCallback()
        : before(this_thread().is_in_callback) {
        this_thread().is_in_callback = true;
    }
    ~InCallback() { this_thread().is_in_callback = before; }
    InCallback(const InCallback&) = delete;
    InCallback& operator=(const InCallback&) = delete;

private:
    bool before;
};

} // namespace orvex::c
