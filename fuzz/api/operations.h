#pragma once

/// @file
/// The public operations as rows: a name, and a function that plays it with arguments off the
/// bytes. Most rows are one line, as a row calls a member function with arguments that its
/// parameters' types choose:
///
/// @code
/// ORVEX_FUZZ_CALL(Camera, set_fov),
/// ORVEX_FUZZ_CALL_OF(Node, find_child, Node*, (int, Node*)),
/// {"Node::add_ref", [](World& world, Bytes& in) { ... }},
/// @endcode

#include <span>
#include <tuple>
#include <utility>

#include "fuzz/api/draw.h"

namespace orvex_fuzz {

struct Operation {
    const char* name;
    void (*play)(World& world, Bytes& in);
};

/// @name The rows, room by room
/// @{
std::span<const Operation> scene_operations();
std::span<const Operation> object_operations();
std::span<const Operation> geometry_operations();
std::span<const Operation> line_operations();
std::span<const Operation> resource_operations();
std::span<const Operation> program_operations();
std::span<const Operation> record_operations();
std::span<const Operation> renderer_operations();
std::span<const Operation> window_operations();
std::span<const Operation> overlay_operations();
std::span<const Operation> kernel_operations();
/// @}

/// Plays an input to its end on a world of its own. ORVEX_FUZZ_TRACE in the environment tells the
/// name of each row on standard error.
void play(Bytes& in, const Stage& stage);

/// Calls a member function on something that lives.
template<auto member>
struct Call;

#define ORVEX_FUZZ_CALL_FORM(qualifiers)                                                           \
    template<class Type, class Result, class... Parameters,                                        \
             Result (Type::*member)(Parameters...) qualifiers>                                     \
    struct Call<member> {                                                                          \
        static void play(World& world, Bytes& in) {                                                \
            Type* const self = Place<Type>::find(world, in);                                       \
            if (!self)                                                                             \
                return;                                                                            \
            /* In braces, so that the bytes are read from first to last. */                        \
            std::tuple<Kept<Parameters>...> arguments{draw<Parameters>(world, in)...};             \
            std::apply([&](auto&... each) { static_cast<void>((self->*member)(each...)); },        \
                       arguments);                                                                 \
        }                                                                                          \
    };
ORVEX_FUZZ_CALL_FORM()
ORVEX_FUZZ_CALL_FORM(const)
ORVEX_FUZZ_CALL_FORM(const noexcept)
#undef ORVEX_FUZZ_CALL_FORM

/// The same, with integers that are counts of what fits in the arrays handed over.
template<auto member>
void call_counted(World& world, Bytes& in) {
    in.counts_are_small = true;
    Call<member>::play(world, in);
    in.counts_are_small = false;
}

} // namespace orvex_fuzz

/// A row that calls a member function that isn't overloaded.
#define ORVEX_FUZZ_CALL(Type, name)                                                                \
    { #Type "::" #name, &Call < &Type::name> ::play }
/// A row that calls one of several: with the result and the parameters of the one.
#define ORVEX_FUZZ_CALL_OF(Type, name, Result, parameters)                                         \
    { #Type "::" #name, &Call < static_cast < Result(Type::*) parameters>(&Type::name)> ::play }
/// A row whose integers count elements of arrays.
#define ORVEX_FUZZ_COUNTED(Type, name)                                                             \
    { #Type "::" #name, &call_counted < &Type::name> }
