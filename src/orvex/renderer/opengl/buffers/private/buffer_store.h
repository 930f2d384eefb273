#pragma once

/// @file
/// The life of a GPU buffer, for every kind of record.
///
/// A record of the contract holds the ids of its buffers and what the back end remembers about them
/// as plain fields. A store is a view of one buffer through those fields: it is made where the
/// buffer is needed, costs nothing, and keeps nothing itself.
///
///   no name  --allocate-->  named, with a store  --delete_buffer-->  no name
///                                |        ^
///                                +--------+  allocate, resize_bound: another size
///
/// An unknown size, 0, fits everything: a host made such a buffer, and it isn't touched.
///
/// A context without memory may refuse a name. The prepare that needs it is refused then, and the
/// draw that follows it sends nothing: over buffer 0 the arrays would point into the host's memory.
/// The next prepare tries again.

#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// One GPU buffer, seen through the fields of its record.
class BufferStore {
public:
    /// @param gl      has to live as long as this
    /// @param target  what it is bound to, as `GL_ARRAY_BUFFER`
    /// @param use     its label for debuggers
    /// @param id      the record's field, 0 for no buffer
    /// @param bytes   the record's field for the size last allocated, 0 for unknown
    BufferStore(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, const char* use,
                unsigned int& id, unsigned long& bytes)
        : gl(gl)
        , target(target)
        , use(use)
        , id(id)
        , bytes(bytes) {}

    bool exists() const { return id != 0; }
    unsigned int name() const { return id; }
    GLenum bound_to() const { return target; }
    /// @return whether the size is known to be another
    bool has_other_size(unsigned long wanted) const { return bytes != 0 && bytes != wanted; }
    /// @return whether there is a buffer, of that size or of an unknown one
    bool fits(unsigned long wanted) const { return exists() && !has_other_size(wanted); }

    void bind() const { gl.glBindBuffer(target, id); }
    void unbind() const { gl.glBindBuffer(target, 0); }

    /// Makes the buffer if there is none, gives it a store and leaves it bound. Without a name for
    /// it nothing is bound, and it doesn't exist afterwards.
    /// @param data  `wanted` bytes that fill it, or null
    /// @return whether its name is new
    bool allocate(unsigned long wanted, const void* data, GLenum usage);

    /// Gives the buffer, which is bound, an empty store of another size.
    void resize_bound(unsigned long wanted, GLenum usage);

    /// Fills a part of the buffer, which is bound.
    void upload_bound(unsigned long offset, unsigned long size, const void* data) const {
        gl.glBufferSubData(target, static_cast<GLintptr>(offset), static_cast<GLsizeiptr>(size),
                           data);
    }

private:
    const ORVEX_Renderer_OpenGL_Func& gl;
    GLenum target;
    const char* use;
    unsigned int& id;
    unsigned long& bytes;
};

/// Makes a buffer that no record holds, with a store, and leaves it bound.
/// @return its id; 0 without memory
unsigned int create_buffer(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, const char* use,
                           unsigned long bytes, const void* data, GLenum usage);

/// Lets nothing of a record be drawn until it is prepared again.
/// @return false
bool refuse_draws(const GlState& state, const void* record);
/// @return whether the record's last prepare failed for want of a buffer
inline bool is_refused(const GlState& state, const void* record) {
    return state.context().refused_record == record;
}
/// Takes a refusal back.
inline void accept_draws(const GlState& state, const void* record) {
    if (is_refused(state, record))
        state.context().refused_record = nullptr;
}

/// Deletes a buffer if there is one, and disables the client arrays that point into it.
/// @param id  0 afterwards
void delete_buffer(GlState& state, unsigned int& id);

} // namespace orvex
