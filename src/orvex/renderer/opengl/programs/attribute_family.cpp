#include "orvex/renderer/opengl/programs/private/attribute_family.h"

#include <cstdio>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/polyline_data.h"

// Where names stand is asked of a linked program, where they are to stand is told to the next link.

namespace orvex {

namespace {

// In a program's table of names: the core attributes from 0 on, then those of instances.
constexpr unsigned int first_instancing_attrib = 6;
constexpr unsigned int end_of_instancing_attribs = 11;

} // namespace

int AttributeFamily::location(const GpuProgramData* program, const char* name) const {
    if (!program || !name || !gl.glGetAttribLocation)
        return -1;
    return gl.glGetAttribLocation(program->gl_program, name);
}

bool AttributeFamily::bind_location(const GpuProgramData* program, const char* name,
                                    int location) const {
    if (!program || !name || !gl.glBindAttribLocation)
        return false;
    gl.glBindAttribLocation(program->gl_program, static_cast<GLuint>(location), name);
    return true;
}

int AttributeFamily::move(GpuProgramData* program, const char* name, int index) const {
    const int found = location(program, name);
    if (found >= 0) {
        bind_location(program, name, index);
        program->linked = false;
    }
    return found;
}

int AttributeFamily::move_standard(GpuProgramData* program, unsigned int index) const {
    if (!program)
        return -1;
    const int found =
        move(program, program->get_vertex_attrib_name(index), static_cast<int>(index));
    if (found >= 0 && program->auto_generic_pending) {
        program->set_use_generic_vertex_attribs_state(true);
        program->auto_generic_pending = false;
    }
    return found;
}

bool AttributeFamily::move_core(GpuProgramData* program) const {
    if (!program)
        return false;
    if (program->core_attribs_pending) {
        for (unsigned int i = 0; i < first_instancing_attrib; ++i)
            move_standard(program, i);
        program->core_attribs_pending = false;
    }
    return true;
}

bool AttributeFamily::move_instancing(GpuProgramData* program) const {
    if (!program)
        return false;
    if (program->instancing_attribs_pending) {
        for (unsigned int i = first_instancing_attrib; i < end_of_instancing_attribs; ++i)
            move_standard(program, i);
        program->instancing_attribs_pending = false;
    }
    return true;
}

bool AttributeFamily::match_instancing(GpuProgramData* program, MeshData* mesh) const {
    if (!program || !mesh || mesh->num_instances == 0)
        return false;
    // The mesh's locations stay as they are made, which are those of the table.
    if (mesh->use_generic_vertex_attribs) {
        for (unsigned int i = first_instancing_attrib; i < end_of_instancing_attribs; ++i)
            bind_location(program, program->get_vertex_attrib_name(i), static_cast<int>(i));
        program->linked = false;
        return true;
    }
    VertexAttribArray* const arrays[] = {&mesh->instance_positions, &mesh->instance_rotations,
                                         &mesh->instance_scales, &mesh->instance_colors,
                                         &mesh->instance_miscs};
    unsigned int index = first_instancing_attrib;
    for (VertexAttribArray* const array : arrays)
        array->attrib_location = location(program, program->get_vertex_attrib_name(index++));
    return true;
}

namespace {

// By itself, as most records have no such attributes and need no room for names.
[[gnu::noinline]] int locate_user(const AttributeFamily& attributes, const GpuProgramData* program,
                                  unsigned long index) {
    char name[64];
    std::snprintf(name, sizeof(name), "orvex_Attrib%d", static_cast<int>(index));
    return attributes.location(program, name);
}

template<class Record>
bool look_up(const AttributeFamily& attributes, const GpuProgramData* program, Record* record) {
    if (!program || !record || record->num_user_attribs == 0)
        return false;
    if (!record->user_attribs_allocated)
        return true;
    for (unsigned long i = 0; i < record->num_user_attribs; ++i)
        record->user_attribs[i].attrib_location = locate_user(attributes, program, i);
    return true;
}

} // namespace

bool AttributeFamily::look_up_user(const GpuProgramData* program, MeshData* mesh) const {
    return look_up(*this, program, mesh);
}

bool AttributeFamily::look_up_user(const GpuProgramData* program, PolylineData* polyline) const {
    return look_up(*this, program, polyline);
}

} // namespace orvex
