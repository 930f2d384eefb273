#pragma once

/// @file
/// What is left of a model that came to nothing.

#include <ctime>

#include "batch/entry.h"

namespace batch {

/// The time by which the system marks files now.
timespec time_of_files();

/// Removes those files of an entry that were written since a time: pictures of a turn, of which the
/// rest is missing. What stood there before stays.
void remove_leavings(const Entry& entry, const timespec& since);

} // namespace batch
