#pragma once

/// A host's own header that bears the name of one of the engine's: the two must not meet.
namespace host {

enum class Api { of_the_host };

} // namespace host
