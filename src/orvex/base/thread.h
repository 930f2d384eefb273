#pragma once

/// @file
/// Thread: the identity of a thread.

#include <sys/types.h>

#include "orvex/api.h"

namespace orvex {

/// Names a thread. A plain value: copies name the same thread.
///
/// @code
/// orvex::Thread owner;               // names the thread that runs this line
/// bool same = owner == orvex::Thread();
/// @endcode
class ORVEX_API Thread {
public:
    /// Names the calling thread.
    Thread();

    /// Names the calling thread from now on.
    void update();

    /// Whether both name the same thread.
    [[nodiscard]] bool operator==(const Thread& other) const;

    /// The negation of `==`.
    [[nodiscard]] bool operator!=(const Thread& other) const;

private:
    pthread_t id;
};

} // namespace orvex
