#pragma once

/// @file
/// The names of vertex attributes: where they stand in a program, and where the engine wants them.
///
/// A program's table of names tells the location that each name is to have. The linker doesn't know
/// that, so a program is linked once, asked which of the names it declares, told where to put
/// those, and linked again: whatever moves an attribute clears `linked`.

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// Looks up and moves vertex attributes. Locations are known of a linked program only.
class AttributeFamily {
public:
    /// @param state  outlives the object
    explicit AttributeFamily(const GlState& state)
        : gl(state.gl) {}

    /// @return the location, -1 for a null argument and for a name that the program doesn't declare
    int location(const GpuProgramData* program, const char* name) const;
    /// Gives a name its location from the next link on; false for a null argument.
    bool bind_location(const GpuProgramData* program, const char* name, int location) const;

    /// Moves an attribute to the location `index`, from the next link on, if the linked program
    /// declares it.
    /// @return the location it has now, below 0 if the program doesn't declare it
    int move(GpuProgramData* program, const char* name, int index) const;
    /// The same for the name that stands at `index` in the program's table. The first one found
    /// chooses the path of generic attributes.
    int move_standard(GpuProgramData* program, unsigned int index) const;

    /// @name The standard attributes of a linked program, once per program
    /// False for null.
    /// @{

    bool move_core(GpuProgramData* program) const;
    bool move_instancing(GpuProgramData* program) const;
    /// @}

    /// Brings a mesh of instances and a program together: on the path of generic attributes the
    /// program takes the mesh's locations, from the next link on; else the mesh takes the
    /// program's.
    /// @return false for null, and for a mesh without instances
    bool match_instancing(GpuProgramData* program, MeshData* mesh) const;

    /// @name Attributes of the host's own, found anew at each call
    /// False for null, and without such attributes.
    /// @{

    bool look_up_user(const GpuProgramData* program, MeshData* mesh) const;
    bool look_up_user(const GpuProgramData* program, PolylineData* polyline) const;
    /// @}

private:
    const ORVEX_Renderer_OpenGL_Func& gl;
};

} // namespace orvex
