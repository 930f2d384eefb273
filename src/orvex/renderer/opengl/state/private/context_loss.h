#pragma once

/// @file
/// Whether a context was lost: a driver that is reset takes with it whatever its contexts had, and
/// every later call does nothing.
///
/// Asking is a round trip to the driver. It is done where a frame is shown or read, and where a
/// host sets the states for one, and never for each object.

namespace orvex {

struct ContextState;

/// Asks the current context, unless it is known to be lost. A loss is marked and told in the log,
/// once. Contexts that were made without notification never tell.
/// @param state  of the current context
/// @return whether it is lost
bool look_for_loss(ContextState& state);

/// Marks a context as lost, and tells it in the log, unless that was done.
/// @param reason  in words
void note_loss(ContextState& state, const char* reason);

} // namespace orvex
