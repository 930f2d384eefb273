#include "orvex/renderer/records/gpu_program_data.h"

#include <algorithm>
#include <iterator>

#include "orvex/renderer/records/gpu_program_uniform.h"
#include "orvex/renderer/records/uniform_buffer_data.h"

// What a back end keeps for a program: texts that are copied in and handed out, and the slots by
// which renderers name their active program, so that none names a record that is gone. The table of
// uniforms stands in gpu_program_data_uniforms.cpp.

namespace orvex {

namespace {

constexpr unsigned long max_entry_point_name = 127;

constexpr const char* standard_attrib_names[] = {
    "orvex_Position",
    "orvex_Color",
    "orvex_Normal",
    "orvex_TexCoord0",
    "orvex_TexCoord1",
    "orvex_Tangent",
    "orvex_Instance_Position",
    "orvex_Instance_Rotation",
    "orvex_Instance_Scale",
    "orvex_Instance_Color",
};
static_assert(std::size(standard_attrib_names) <= GpuProgramData::NUM_VERTEX_ATTRIB_NAMES);

bool is_stage_index(GPU_SHADER_TYPE type) {
    return type >= 0 && type < GPU_SHADER_TYPE_COUNT;
}

} // namespace

GpuProgramData::GpuProgramData() {
    model_matrix_uniform_name.assign("orvex_ModelMatrix");
    view_matrix_uniform_name.assign("orvex_ViewMatrix");
    projection_matrix_uniform_name.assign("orvex_ProjectionMatrix");
    model_view_matrix_uniform_name.assign("orvex_ModelViewMatrix");
    model_view_projection_matrix_uniform_name.assign("orvex_ModelViewProjectionMatrix");
    view_projection_matrix_uniform_name.assign("orvex_ViewProjectionMatrix");
    viewport_uniform_name.assign("orvex_Viewport");
    for (unsigned long i = 0; i < std::size(standard_attrib_names); ++i)
        vertex_attrib_names[i].assign(standard_attrib_names[i]);
    // Last, as nobody frees it where one of the names finds no memory.
    uniforms = new GpuProgramUniform*[UNIFORM_SLOTS]();
    num_uniforms = UNIFORM_SLOTS;
}

GpuProgramData::~GpuProgramData() {
    for (GpuProgramData** slot : active_slots)
        if (*slot == this)
            *slot = nullptr;
    free_data();
    kill_uniforms();
}

void GpuProgramData::free_data() {
    // Texts of the stages, and of the link.
    for (int i = 0; i < GPU_SHADER_TYPE_COUNT; ++i) {
        shader_source[i].reset();
        shader_info_log[i].reset();
        shader_info_log_size[i] = 0;
        d3d11_entry_point_name[i].reset();
    }
    info_log.reset();
    info_log_size = 0;

    delete uniform_buffer;
    uniform_buffer = nullptr;

    // Names: from here on the engine fills in nothing by itself.
    model_matrix_uniform_name.reset();
    view_matrix_uniform_name.reset();
    projection_matrix_uniform_name.reset();
    model_view_matrix_uniform_name.reset();
    model_view_projection_matrix_uniform_name.reset();
    view_projection_matrix_uniform_name.reset();
    viewport_uniform_name.reset();
    for (OwnedText& name : vertex_attrib_names)
        name.reset();
}

namespace {

// A text that isn't longer than what the slot recorded is refused: the first full report of a
// failing shader stays readable while an editor tries variants of it.
bool keep_log(OwnedText& log, unsigned long& recorded_size, const char* text,
              unsigned long length) {
    if (!text || length == 0 || recorded_size >= length)
        return false;
    recorded_size = length + 1;
    log.assign(text, length);
    return true;
}

} // namespace

bool GpuProgramData::set_shader_info_log(GPU_SHADER_TYPE type, const char* text,
                                         unsigned long length) {
    return is_stage_index(type) &&
           keep_log(shader_info_log[type], shader_info_log_size[type], text, length);
}

const char* GpuProgramData::get_shader_info_log(GPU_SHADER_TYPE type) const {
    return is_stage_index(type) ? shader_info_log[type].get() : nullptr;
}

bool GpuProgramData::set_info_log(const char* text, unsigned long length) {
    return keep_log(info_log, info_log_size, text, length);
}

const char* GpuProgramData::get_shader_source_code(GPU_SHADER_TYPE type) const {
    return is_stage_index(type) ? shader_source[type].get() : nullptr;
}

void GpuProgramData::d3d11_set_entry_point_name(GPU_SHADER_TYPE type, const char* name) {
    if (is_stage_index(type))
        d3d11_entry_point_name[type].assign(name, max_entry_point_name);
}

const char* GpuProgramData::d3d11_get_entry_point_name(GPU_SHADER_TYPE type) const {
    if (is_stage_index(type) && d3d11_entry_point_name[type].get())
        return d3d11_entry_point_name[type].get();
    // The stages' customary names, where the host gave none.
    switch (type) {
    case GPU_SHADER_VERTEX:
        return "VS";
    case GPU_SHADER_PIXEL:
        return "PS";
    case GPU_SHADER_GEOMETRY:
        return "GS";
    case GPU_SHADER_TESS_CONTROL:
        return "HS";
    case GPU_SHADER_TESS_EVAL:
        return "DS";
    case GPU_SHADER_COMPUTE:
    case GPU_SHADER_NONE:
    case GPU_SHADER_EFFECT:
        break;
    }
    return "main";
}

void* GpuProgramData::d3d11_get_shader_ptr(GPU_SHADER_TYPE type) const {
    return type >= 0 && type < int(std::size(d3d11_shader)) ? d3d11_shader[type] : nullptr;
}

void GpuProgramData::set_model_matrix_uniform_name(const char* name) {
    model_matrix_uniform_name.assign(name);
}

const char* GpuProgramData::get_model_matrix_uniform_name() const {
    return model_matrix_uniform_name.get();
}

void GpuProgramData::set_view_matrix_uniform_name(const char* name) {
    view_matrix_uniform_name.assign(name);
}

const char* GpuProgramData::get_view_matrix_uniform_name() const {
    return view_matrix_uniform_name.get();
}

void GpuProgramData::set_projection_matrix_uniform_name(const char* name) {
    projection_matrix_uniform_name.assign(name);
}

const char* GpuProgramData::get_projection_matrix_uniform_name() const {
    return projection_matrix_uniform_name.get();
}

void GpuProgramData::set_model_view_matrix_uniform_name(const char* name) {
    model_view_matrix_uniform_name.assign(name);
}

const char* GpuProgramData::get_model_view_matrix_uniform_name() const {
    return model_view_matrix_uniform_name.get();
}

void GpuProgramData::set_model_view_projection_matrix_uniform_name(const char* name) {
    model_view_projection_matrix_uniform_name.assign(name);
}

const char* GpuProgramData::get_model_view_projection_matrix_uniform_name() const {
    return model_view_projection_matrix_uniform_name.get();
}

void GpuProgramData::set_view_projection_matrix_uniform_name(const char* name) {
    view_projection_matrix_uniform_name.assign(name);
}

const char* GpuProgramData::get_view_projection_matrix_uniform_name() const {
    return view_projection_matrix_uniform_name.get();
}

void GpuProgramData::set_viewport_uniform_name(const char* name) {
    viewport_uniform_name.assign(name);
}

const char* GpuProgramData::get_viewport_uniform_name() const {
    return viewport_uniform_name.get();
}

bool GpuProgramData::set_vertex_attrib_name(unsigned int index, const char* name) {
    if (index >= NUM_VERTEX_ATTRIB_NAMES)
        return false;
    vertex_attrib_names[index].assign(name);
    linked = false;
    return true;
}

const char* GpuProgramData::get_vertex_attrib_name(unsigned int index) const {
    return index < NUM_VERTEX_ATTRIB_NAMES ? vertex_attrib_names[index].get() : nullptr;
}

void GpuProgramData::add_active_slot(GpuProgramData** slot) {
    if (slot && std::find(active_slots.begin(), active_slots.end(), slot) == active_slots.end())
        active_slots.push_back(slot);
}

void GpuProgramData::remove_active_slot(GpuProgramData** slot) {
    // What came last mostly goes first: at each draw.
    if (!active_slots.empty() && active_slots.back() == slot) {
        active_slots.pop_back();
        return;
    }
    active_slots.erase(std::remove(active_slots.begin(), active_slots.end(), slot),
                       active_slots.end());
}

} // namespace orvex
