#pragma once

/// @file
/// What records share that several owners use, or whose GPU objects belong to one thread.

#include "orvex/api.h"
#include "orvex/base/thread.h"

namespace orvex {

/// A record that counts its users. It deletes nothing itself: whoever takes the last user away
/// does. Not locked.
struct CountedRecord {
    int ref_count = 0; ///< number of users; see `inc_ref`

    void inc_ref() { ++ref_count; } ///< one more user of the record
    /// One user less; stops at 0, and never deletes.
    void dec_ref() {
        if (ref_count > 0)
            --ref_count;
    }
    int get_ref() const { return ref_count; } ///< number of users
};

/// A record that knows the thread on which its GPU objects may be deleted.
struct ThreadRecord {
    Thread thread; ///< owner thread, the creator's at first

    Thread* get_thread_ptr() { return &thread; }             ///< part of the record
    const Thread* get_thread_ptr() const { return &thread; } ///< part of the record
    Thread* get_thread() { return &thread; }                 ///< as `get_thread_ptr`
    const Thread* get_thread() const { return &thread; }     ///< as `get_thread_ptr`
    void update_thread() { thread.update(); }                ///< the calling thread owns it now
    bool check_thread() const { return Thread() == thread; } ///< true on the owner thread
};

} // namespace orvex
