#pragma once

/// @file
/// Which vertex arrays outside vertex array objects are enabled, and over which buffers.

#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex {

/// An array of the fixed pipeline.
enum class ClientArray { vertex, color, normal, uv0, uv1 };

/// Remembers the arrays that a draw by client arrays left enabled.
///
/// Finishing a record leaves some of its arrays enabled, and the next prepare points them
/// elsewhere. In between their buffer may be deleted, or a longer record without such an array may
/// be drawn: either would make the driver read memory that isn't there. So deleting a buffer
/// disables the arrays over it, and a prepare disables those that it doesn't set and that are too
/// short for it.
class ClientArrays {
public:
    /// Enables an array over a buffer. For texture coordinates the caller has selected the unit.
    void enable(ClientArray array, unsigned int buffer, unsigned long num_vertices);
    /// Disables an array, selecting the unit of texture coordinates first.
    void disable(const ORVEX_Renderer_OpenGL_Func& gl, ClientArray array);

    /// Enables a generic array over a buffer.
    void enable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location, unsigned int buffer,
                        unsigned long num_vertices);
    /// Disables a generic array.
    void disable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location);

    /// Starts a prepare: no array is set by it yet.
    void begin_prepare();
    /// Ends a prepare: disables arrays that it didn't set and that have fewer vertices.
    void end_prepare(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long num_vertices);

    /// Disables all that are enabled, as far as is known here.
    void disable_all(const ORVEX_Renderer_OpenGL_Func& gl);
    /// @return whether an array over the buffer is enabled
    bool reads(unsigned int buffer) const;
    /// Disables the arrays over a buffer that is being deleted.
    void forget_buffer(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int buffer);

private:
    struct State {
        unsigned int buffer = 0; ///< 0: not enabled, as far as is known here
        unsigned long num_vertices = 0;
        bool set_by_prepare = false;
    };

    /// Disables the arrays of which something holds.
    template<class Holds>
    void disable_where(const ORVEX_Renderer_OpenGL_Func& gl, Holds holds);

    static constexpr int num_fixed = 5;
    static constexpr int num_generic = 32;

    State fixed[num_fixed];
    State generic[num_generic];
};

} // namespace orvex
