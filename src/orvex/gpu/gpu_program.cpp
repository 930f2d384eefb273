// A program is a record that the renderer's operations are called with; only what the engine itself
// knows of it, its sources, messages and names, is worked out here. Its uniforms stand in
// gpu_program_uniforms.cpp.

#include "orvex/gpu/gpu_program.h"

#include <cstring>
#include <string>
#include <utility>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/gpu/private/shader_text.h"
#include "orvex/platform/private/file_bytes.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/uniform_buffer_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

struct GpuProgram::GpuProgramInternals {
    std::string error_messages;
};

GpuProgram::GpuProgram()
    : internals(std::make_unique<GpuProgramInternals>())
    , data(std::make_unique<GpuProgramData>()) {
    set_type(NODE_TYPE_GPU_PROGRAM);
}

GpuProgram::~GpuProgram() = default;

bool GpuProgram::_cleanup(Renderer* renderer) {
    if (renderer) {
        if (data->uniform_buffer) {
            ub_unmap(renderer);
            ub_cleanup(renderer);
        }
        renderer->gpu_program_kill(data.get());
    }
    data->free_data();
    return Resource::_cleanup(renderer);
}

int GpuProgram::get_renderer_id() {
    return data->renderer_id;
}

bool GpuProgram::load_from_file(Renderer* renderer, const char* path) {
    if (!path)
        return misuse("GpuProgram::load_from_file", "a null path");
    FileBytes file;
    return file.read(path) && load_from_memory(renderer, file.text(), file.size() + 1);
}

bool GpuProgram::load_from_memory(Renderer* renderer, const char* text, unsigned long size) {
    if (!text || size == 0)
        return misuse("GpuProgram::load_from_memory", "no text");
    const ShaderText sections(text, size);
    if (!sections.is_complete())
        return false;
    for (const GPU_SHADER_TYPE type : ShaderText::load_order) {
        const char* const body = sections.get_body(type);
        if (body && !shader_load_from_memory(renderer, type, body, std::strlen(body) + 1))
            return false;
    }
    return true;
}

bool GpuProgram::shader_load_from_file(Renderer* renderer, GPU_SHADER_TYPE type, const char* path) {
    if (!path)
        return misuse("GpuProgram::shader_load_from_file", "a null path");
    FileBytes file;
    return file.read(path) && shader_load_from_memory(renderer, type, file.text(), file.size() + 1);
}

bool GpuProgram::shader_load_from_memory(Renderer* renderer, GPU_SHADER_TYPE type,
                                         const char* source, unsigned long size) {
    if (!renderer)
        return misuse("GpuProgram::shader_load_from_memory", "a null renderer");
    if (type < 0 || type >= GPU_SHADER_TYPE_COUNT)
        return misuse("GpuProgram::shader_load_from_memory", "a stage outside 0 to 7");

    // The source of a stage is kept once it compiled, so that a host can show what runs. Its memory
    // comes first: a stage that is loaded twice would link against itself.
    OwnedText kept;
    kept.assign(source, size);
    const DebugName name(*this);
    data->shader_loaded[type] =
        renderer->gpu_program_load_shader_from_memory(data.get(), type, source, size);
    if (data->shader_loaded[type]) {
        data->shader_source[type] = std::move(kept);
        return true;
    }
    if (const char* const log = data->get_shader_info_log(type)) {
        LogMgr::get()->tracef_warning("GPU program %s - %s shader: %s", get_name(),
                                      GetGpuShaderTypeLabel(type), log);
    }
    return false;
}

bool GpuProgram::bind(Renderer* renderer) {
    if (!renderer)
        return misuse("GpuProgram::bind", "a null renderer");
    return renderer->gpu_program_activate(data.get());
}

bool GpuProgram::unbind(Renderer* renderer) {
    if (!renderer)
        return misuse("GpuProgram::unbind", "a null renderer");
    return renderer->gpu_program_activate(nullptr);
}

bool GpuProgram::activate(Renderer* renderer) {
    return bind(renderer);
}

bool GpuProgram::deactivate(Renderer* renderer) {
    return unbind(renderer);
}

bool GpuProgram::run_compute(Renderer* renderer, unsigned int x, unsigned int y, unsigned int z) {
    if (!renderer)
        return misuse("GpuProgram::run_compute", "a null renderer");
    return renderer->gpu_program_run_compute(data.get(), x, y, z);
}

bool GpuProgram::bind_uniforms(Renderer* renderer) {
    if (!renderer)
        return misuse("GpuProgram::bind_uniforms", "a null renderer");
    return renderer->gpu_program_bind_uniforms(data.get());
}

bool GpuProgram::need_bind_uniforms() {
    return data->need_bind_uniforms();
}

Thread* GpuProgram::get_thread_ptr() {
    return data->get_thread_ptr();
}

const Thread* GpuProgram::get_thread_ptr() const {
    return data->get_thread_ptr();
}

Thread* GpuProgram::get_thread() {
    return data->get_thread();
}

const Thread* GpuProgram::get_thread() const {
    return data->get_thread();
}

void GpuProgram::set_valid_state(bool state) {
    data->valid = state;
}

bool GpuProgram::is_valid() const {
    return data->valid;
}

const char* GpuProgram::get_shader_error_messages() {
    std::string& messages = internals->error_messages;
    messages.clear();
    for (int i = 0; i < GPU_SHADER_TYPE_COUNT; ++i) {
        const auto type = GPU_SHADER_TYPE(i);
        if (const char* const log = data->get_shader_info_log(type))
            messages.append("\n")
                .append(GetGpuShaderTypeLabel(type))
                .append(" shader error: ")
                .append(log);
    }
    return messages.c_str();
}

const char* GpuProgram::get_shader_source_code(GPU_SHADER_TYPE type) const {
    return data->get_shader_source_code(type);
}

int GpuProgram::get_vertex_attrib_location(Renderer* renderer, const char* name) {
    return renderer ? renderer->gpu_program_get_vertex_attrib_location(data.get(), name) : -1;
}

int GpuProgram::get_uniform_location(Renderer* renderer, const char* name) {
    return renderer ? renderer->gpu_program_get_uniform_location(data.get(), name) : -1;
}

void GpuProgram::set_model_matrix_uniform_name(const char* name) {
    data->set_model_matrix_uniform_name(name);
}

const char* GpuProgram::get_model_matrix_uniform_name() const {
    return data->get_model_matrix_uniform_name();
}

void GpuProgram::set_view_matrix_uniform_name(const char* name) {
    data->set_view_matrix_uniform_name(name);
}

const char* GpuProgram::get_view_matrix_uniform_name() const {
    return data->get_view_matrix_uniform_name();
}

void GpuProgram::set_projection_matrix_uniform_name(const char* name) {
    data->set_projection_matrix_uniform_name(name);
}

const char* GpuProgram::get_projection_matrix_uniform_name() const {
    return data->get_projection_matrix_uniform_name();
}

void GpuProgram::set_model_view_matrix_uniform_name(const char* name) {
    data->set_model_view_matrix_uniform_name(name);
}

const char* GpuProgram::get_model_view_matrix_uniform_name() const {
    return data->get_model_view_matrix_uniform_name();
}

void GpuProgram::set_model_view_projection_matrix_uniform_name(const char* name) {
    data->set_model_view_projection_matrix_uniform_name(name);
}

const char* GpuProgram::get_model_view_projection_matrix_uniform_name() const {
    return data->get_model_view_projection_matrix_uniform_name();
}

bool GpuProgram::set_vertex_attrib_name(unsigned int index, const char* name) {
    return data->set_vertex_attrib_name(index, name);
}

const char* GpuProgram::get_vertex_attrib_name(unsigned int index) const {
    return data->get_vertex_attrib_name(index);
}

void GpuProgram::set_use_generic_vertex_attribs_state(bool state) {
    data->set_use_generic_vertex_attribs_state(state);
}

bool GpuProgram::get_use_generic_vertex_attribs_state() const {
    return data->get_use_generic_vertex_attribs_state();
}

bool GpuProgram::ub_init(Renderer* renderer, const char* block_name) {
    if (!block_name)
        return misuse("GpuProgram::ub_init", "a null block name");
    if (!data->uniform_buffer)
        data->uniform_buffer = new UniformBufferData;

    // The name is kept without a renderer too: it is what the next call with one looks up.
    UniformBufferData& block = *data->uniform_buffer;
    std::memset(block.name, 0, UniformBufferData::NAME_SIZE);
    std::strncpy(block.name, block_name, UniformBufferData::NAME_SIZE - 1);
    const DebugName name(*this);
    return renderer && renderer->uniform_buffer_initialize(&block, data->gl_program);
}

namespace {

// The block that an operation works on, null with a word to the log where there is none.
UniformBufferData* block_of(const GpuProgramData& data, const char* operation) {
    if (!data.uniform_buffer)
        misuse(operation, "a program without a uniform block: ub_init makes one");
    return data.uniform_buffer;
}

} // namespace

bool GpuProgram::ub_bind(Renderer* renderer) {
    UniformBufferData* const block = block_of(*data, "GpuProgram::ub_bind");
    return block && renderer && renderer->uniform_buffer_bind(block);
}

bool GpuProgram::ub_bind_base(Renderer* renderer, unsigned int binding) {
    UniformBufferData* const block = block_of(*data, "GpuProgram::ub_bind_base");
    if (!block)
        return false;
    block->binding = binding;
    return renderer && renderer->uniform_buffer_bind_base(block);
}

bool GpuProgram::ub_unbind(Renderer* renderer) {
    UniformBufferData* const block = block_of(*data, "GpuProgram::ub_unbind");
    return block && renderer && renderer->uniform_buffer_unbind(block);
}

void* GpuProgram::ub_map(Renderer* renderer) {
    UniformBufferData* const block = block_of(*data, "GpuProgram::ub_map");
    return block && renderer ? renderer->uniform_buffer_map(block) : nullptr;
}

bool GpuProgram::ub_unmap(Renderer* renderer) {
    UniformBufferData* const block = block_of(*data, "GpuProgram::ub_unmap");
    return block && renderer && renderer->uniform_buffer_unmap(block);
}

bool GpuProgram::ub_cleanup(Renderer* renderer) {
    if (!data->uniform_buffer)
        return false; // nothing to clean up is no mistake
    if (renderer)
        renderer->uniform_buffer_kill(data->uniform_buffer);
    delete data->uniform_buffer;
    data->uniform_buffer = nullptr;
    return true;
}

bool GpuProgram::ub_set_value_ui64(Renderer*, unsigned long index, unsigned long long value) {
    const UniformBufferData* const block = data->uniform_buffer;
    if (!block || !block->mapped)
        return misuse("GpuProgram::ub_set_value_ui64", "a buffer that isn't mapped");
    const unsigned long size = block->mapped_size ? block->mapped_size : block->size;
    if (index >= size / sizeof value)
        return misuse("GpuProgram::ub_set_value_ui64", "an index beyond the buffer's end");
    std::memcpy(static_cast<char*>(block->mapped) + index * sizeof value, &value, sizeof value);
    return true;
}

} // namespace orvex
