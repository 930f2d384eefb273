#pragma once

/// @file
/// Marks what the shared library exports. Everything else in it is hidden.

/// @namespace orvex
/// The engine: its classes, records, enumerations and free operations.

#if defined(__GNUC__)
/// Exports a class or an operation from the shared library.
#define ORVEX_API __attribute__((visibility("default")))
/// Lets the compiler check the arguments of a printf-style operation. Positions count from 1, and
/// `this` is the first argument of a member.
#define ORVEX_PRINTF(format_position, arguments_position)                                          \
    __attribute__((format(printf, format_position, arguments_position)))
#else
#define ORVEX_API
#define ORVEX_PRINTF(format_position, arguments_position)
#endif
