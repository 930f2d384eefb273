#pragma once

/// @file
/// Marks what the kit's shared library exports. Everything else in it is hidden.

/// @namespace orvex::kit
/// What every host would otherwise write itself, on the engine's public operations alone.

#if defined(__GNUC__)
/// Exports a class or an operation from the kit's shared library.
#define ORVEX_KIT_API __attribute__((visibility("default")))
#else
#define ORVEX_KIT_API
#endif
