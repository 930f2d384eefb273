#pragma once

/// @file
/// Which vertex arrays outside vertex array objects are enabled, and over which buffers.

#include <cstdint>

#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

/// Where one attribute lies in the bound vertex buffer.
struct ClientPlace {
    unsigned int buffer;
    unsigned long num_vertices;
    unsigned int dim;     ///< floats
    unsigned long stride; ///< bytes, 0 for elements one behind the other
    unsigned long offset; ///< bytes
};

/// An array of the fixed pipeline.
enum class ClientArray { vertex, color, normal, uv0, uv1 };

/// Remembers the arrays that a draw by client arrays left enabled.
///
/// Finishing a record leaves some of its arrays enabled, and the next prepare points them
/// elsewhere. In between their buffer may be deleted, or a longer record without such an array may
/// be drawn: either would make the driver read memory that isn't there. So deleting a buffer
/// disables the arrays over it, and a prepare disables those that it doesn't set and that are too
/// short for it.
///
/// While binds are kept, see bound_state.h, an array that is disabled is held: it stays enabled in
/// the API, for a prepare that points it to the same place.
class ClientArrays {
public:
    /// @return whether the array stands enabled at that place, so that no call is needed; it is
    ///         enabled then as far as is known here
    bool resume(ClientArray array, const ClientPlace& place);
    bool resume_generic(int location, const ClientPlace& place) {
        return is_keeping && location < num_generic && resume(number_of(location), place);
    }
    /// Enables an array that was pointed to a place. For texture coordinates the caller has
    /// selected the unit.
    void enable(ClientArray array, const ClientPlace& place);
    /// Disables an array, selecting the unit of texture coordinates first.
    /// @return whether it is held, or was
    bool disable(const ORVEX_Renderer_OpenGL_Func& gl, ClientArray array);

    /// Enables a generic array that was pointed to a place.
    void enable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location,
                        const ClientPlace& place);
    /// Disables a generic array.
    bool disable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location);
    /// Selects the unit of texture coordinates, 0 or 1. Only with the entry point.
    void select_unit(const ORVEX_Renderer_OpenGL_Func& gl, int unit);

    /// Starts a prepare: no array is set by it yet.
    void begin_prepare() { set_by_prepare = 0; }
    /// Ends a prepare: disables arrays that it didn't set and that have fewer vertices.
    /// @return whether one of those is held
    bool end_prepare(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long num_vertices) {
        return (enabled & ~set_by_prepare) != 0 && disable_shorter(gl, num_vertices);
    }

    /// Disables all that are enabled, as far as is known here.
    void disable_all(const ORVEX_Renderer_OpenGL_Func& gl);
    /// @return whether an array over the buffer is enabled
    bool reads(unsigned int buffer) const;
    /// Disables the arrays over a buffer that is being deleted.
    void forget_buffer(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int buffer);

    /// @name Held arrays
    /// @{

    /// Whether arrays that are disabled from now on may be held.
    void set_keeping(bool state);
    /// Disables those that are held.
    void disable_held(const ORVEX_Renderer_OpenGL_Func& gl);
    /// Selects the unit that the full order leaves selected.
    void settle_unit(const ORVEX_Renderer_OpenGL_Func& gl);
    /// Takes nothing for known that the API holds. Whatever is held stays so in the API.
    void forget_pointers();
    /// @}

private:
    /// One bit for each array.
    using Arrays = std::uint64_t;

    static constexpr int num_fixed = 5;
    static constexpr int num_generic = 32;

    // Arrays by number: the fixed ones, then the generic ones.
    static constexpr Arrays bit(int array) { return Arrays{1} << array; }
    static constexpr int number_of(ClientArray array) { return static_cast<int>(array); }
    static constexpr int number_of(int location) { return num_fixed + location; }

    void set(int array, const ClientPlace& place) {
        places[array] = place;
        enabled = place.buffer != 0 ? enabled | bit(array) : enabled & ~bit(array);
        set_by_prepare |= bit(array);
        held &= ~bit(array);
    }
    void point(int array, const ClientPlace& place) {
        set(array, place);
        pointed = is_keeping ? pointed | bit(array) : pointed & ~bit(array);
    }
    bool resume(int array, const ClientPlace& place);
    bool disable_shorter(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long num_vertices);
    bool hold(int array);

    /// Disables some arrays, in the order of their numbers.
    /// @return whether one is held
    bool disable_each(const ORVEX_Renderer_OpenGL_Func& gl, Arrays arrays);
    /// @return those of some arrays of whose place something holds
    template<class Holds>
    Arrays find(Arrays among, Holds holds) const;

    bool is_keeping = false;
    static constexpr int no_unit = -1;
    int wanted_unit = no_unit; ///< as the full order leaves it, once it is known
    int unit = no_unit;        ///< as the API has it
    Arrays enabled = 0;        ///< as far as is known here
    Arrays set_by_prepare = 0;
    Arrays pointed = 0; ///< enabled in the API, each at its place
    Arrays held = 0;
    ClientPlace places[num_fixed + num_generic] = {};
};

} // namespace orvex
