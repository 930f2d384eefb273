#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <cstdio>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/polyline_data.h"

// The names of vertex attributes: where they stand in a program, and where the engine wants them.

namespace orvex {

namespace {

constexpr unsigned int FIRST_INSTANCING_ATTRIB = 6;
constexpr unsigned int END_OF_INSTANCING_ATTRIBS = 11;

} // namespace

int RendererOpenGL::gpu_program_get_vertex_attrib_location(GpuProgramData* program,
                                                           const char* name) {
    if (!program || !name || gl.glGetAttribLocation == nullptr)
        return -1;
    return gl.glGetAttribLocation(program->gl_program, name);
}

bool RendererOpenGL::gpu_program_bind_vertex_attrib_location(GpuProgramData* program,
                                                             const char* name, int location) {
    if (!program || !name || gl.glBindAttribLocation == nullptr)
        return false;
    gl.glBindAttribLocation(program->gl_program, static_cast<GLuint>(location), name);
    return true;
}

int RendererOpenGL::_bind_core_vertex_attrib_location_v2(GpuProgramData* program, const char* name,
                                                         int index) {
    const int location = gpu_program_get_vertex_attrib_location(program, name);
    if (location >= 0) {
        gpu_program_bind_vertex_attrib_location(program, name, index);
        program->linked = false;
    }
    return location;
}

int RendererOpenGL::_bind_core_vertex_attrib_location(GpuProgramData* program, unsigned int index) {
    if (!program)
        return -1;
    const int location = _bind_core_vertex_attrib_location_v2(
        program, program->get_vertex_attrib_name(index), static_cast<int>(index));
    if (location >= 0 && program->auto_generic_pending) {
        program->set_use_generic_vertex_attribs_state(true);
        program->auto_generic_pending = false;
    }
    return location;
}

bool RendererOpenGL::gpu_program_update_core_vertex_attrib_locations(GpuProgramData* program) {
    if (!program)
        return false;
    if (program->core_attribs_pending) {
        for (unsigned int i = 0; i < FIRST_INSTANCING_ATTRIB; ++i)
            _bind_core_vertex_attrib_location(program, i);
        program->core_attribs_pending = false;
    }
    return true;
}

bool RendererOpenGL::gpu_program_update_instancing_vertex_attrib_locations(
    GpuProgramData* program) {
    if (!program)
        return false;
    if (program->instancing_attribs_pending) {
        for (unsigned int i = FIRST_INSTANCING_ATTRIB; i < END_OF_INSTANCING_ATTRIBS; ++i)
            _bind_core_vertex_attrib_location(program, i);
        program->instancing_attribs_pending = false;
    }
    return true;
}

bool RendererOpenGL::gpu_program_update_instancing_vertex_attrib_locations_mesh(
    GpuProgramData* program, MeshData* mesh) {
    if (!program || !mesh || mesh->num_instances == 0)
        return false;
    if (mesh->use_generic_vertex_attribs) {
        for (unsigned int i = FIRST_INSTANCING_ATTRIB; i < END_OF_INSTANCING_ATTRIBS; ++i) {
            gpu_program_bind_vertex_attrib_location(program, program->get_vertex_attrib_name(i),
                                                    static_cast<int>(i));
        }
        program->linked = false;
        return true;
    }
    VertexAttribArray* const arrays[] = {&mesh->instance_positions, &mesh->instance_rotations,
                                         &mesh->instance_scales, &mesh->instance_colors,
                                         &mesh->instance_miscs};
    unsigned int index = FIRST_INSTANCING_ATTRIB;
    for (VertexAttribArray* const array : arrays) {
        array->attrib_location = gpu_program_get_vertex_attrib_location(
            program, program->get_vertex_attrib_name(index++));
    }
    return true;
}

namespace {

template<class Record>
bool look_up_user_attribs(RendererOpenGL& renderer, GpuProgramData* program, Record* record) {
    if (!program || !record || record->num_user_attribs == 0)
        return false;
    if (!record->user_attribs_allocated)
        return true;
    for (unsigned long i = 0; i < record->num_user_attribs; ++i) {
        char name[64];
        std::snprintf(name, sizeof name, "orvex_Attrib%d", static_cast<int>(i));
        record->user_attribs[i].attrib_location =
            renderer.gpu_program_get_vertex_attrib_location(program, name);
    }
    return true;
}

} // namespace

bool RendererOpenGL::gpu_program_update_user_vertex_attrib_locations_mesh(GpuProgramData* program,
                                                                          MeshData* mesh) {
    return look_up_user_attribs(*this, program, mesh);
}

bool RendererOpenGL::gpu_program_update_user_vertex_attrib_locations_polyline(
    GpuProgramData* program, PolylineData* polyline) {
    return look_up_user_attribs(*this, program, polyline);
}

} // namespace orvex
