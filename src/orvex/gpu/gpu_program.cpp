#include "orvex/gpu/gpu_program.h"

#include <cstring>
#include <string>

#include "orvex/base/log_mgr.h"
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
    : data_(new GpuProgramData)
    , internals_(new GpuProgramInternals) {
    set_type(NODE_TYPE_GPU_PROGRAM);
}

GpuProgram::~GpuProgram() {
    delete data_;
    delete internals_;
}

bool GpuProgram::_cleanup(Renderer* renderer) {
    if (renderer) {
        ub_unmap(renderer);
        ub_cleanup(renderer);
        renderer->gpu_program_kill(data_);
    }
    data_->free_data();
    return Resource::_cleanup(renderer);
}

int GpuProgram::get_renderer_id() {
    return data_->renderer_id;
}

bool GpuProgram::load_from_file(Renderer* renderer, const char* path) {
    FileBytes file;
    return file.read(path) && load_from_memory(renderer, file.text(), file.size() + 1);
}

bool GpuProgram::load_from_memory(Renderer* renderer, const char* text, unsigned long size) {
    if (!text || size == 0)
        return false;
    const ShaderText sections(text, size);
    if (!sections.is_complete())
        return false;
    for (const GPU_SHADER_TYPE type : ShaderText::LOAD_ORDER) {
        const char* const body = sections.get_body(type);
        if (body && !shader_load_from_memory(renderer, type, body, std::strlen(body) + 1))
            return false;
    }
    return true;
}

bool GpuProgram::shader_load_from_file(Renderer* renderer, GPU_SHADER_TYPE type, const char* path) {
    FileBytes file;
    return file.read(path) && shader_load_from_memory(renderer, type, file.text(), file.size() + 1);
}

bool GpuProgram::shader_load_from_memory(Renderer* renderer, GPU_SHADER_TYPE type,
                                         const char* source, unsigned long size) {
    if (!renderer || type < 0 || type >= GPU_SHADER_TYPE_COUNT)
        return false;
    const DebugName name(*this);
    data_->shader_loaded[type] =
        renderer->gpu_program_load_shader_from_memory(data_, type, source, size);
    if (data_->shader_loaded[type]) {
        data_->shader_source[type].assign(source, size);
        return true;
    }
    if (const char* const log = data_->get_shader_info_log(type)) {
        LogMgr::get()->tracef_warning("GPU program %s - %s shader: %s", get_name(),
                                      GetGpuShaderTypeLabel(type), log);
    }
    return false;
}

bool GpuProgram::bind(Renderer* renderer) {
    return renderer && renderer->gpu_program_activate(data_);
}

bool GpuProgram::unbind(Renderer* renderer) {
    return renderer && renderer->gpu_program_activate(nullptr);
}

bool GpuProgram::activate(Renderer* renderer) {
    return bind(renderer);
}

bool GpuProgram::deactivate(Renderer* renderer) {
    return unbind(renderer);
}

bool GpuProgram::run_compute(Renderer* renderer, unsigned int x, unsigned int y, unsigned int z) {
    return renderer && renderer->gpu_program_run_compute(data_, x, y, z);
}

bool GpuProgram::bind_uniforms(Renderer* renderer) {
    return renderer && renderer->gpu_program_bind_uniforms(data_);
}

bool GpuProgram::need_bind_uniforms() {
    return data_->need_bind_uniforms();
}

Thread* GpuProgram::get_thread_ptr() {
    return data_->get_thread_ptr();
}

Thread* GpuProgram::get_thread() {
    return data_->get_thread();
}

void GpuProgram::set_valid_state(bool state) {
    data_->valid = state;
}

bool GpuProgram::is_valid() const {
    return data_->valid;
}

const char* GpuProgram::get_shader_error_messages() {
    std::string& messages = internals_->error_messages;
    messages.clear();
    for (int i = 0; i < GPU_SHADER_TYPE_COUNT; ++i) {
        const auto type = GPU_SHADER_TYPE(i);
        if (const char* const log = data_->get_shader_info_log(type))
            messages.append("\n")
                .append(GetGpuShaderTypeLabel(type))
                .append(" shader error: ")
                .append(log);
    }
    return messages.c_str();
}

const char* GpuProgram::get_shader_source_code(GPU_SHADER_TYPE type) const {
    return data_->get_shader_source_code(type);
}

int GpuProgram::get_vertex_attrib_location(Renderer* renderer, const char* name) {
    return renderer ? renderer->gpu_program_get_vertex_attrib_location(data_, name) : -1;
}

int GpuProgram::get_uniform_location(Renderer* renderer, const char* name) {
    return renderer ? renderer->gpu_program_get_uniform_location(data_, name) : -1;
}

void GpuProgram::set_model_matrix_uniform_name(const char* name) {
    data_->set_model_matrix_uniform_name(name);
}

const char* GpuProgram::get_model_matrix_uniform_name() const {
    return data_->get_model_matrix_uniform_name();
}

void GpuProgram::set_view_matrix_uniform_name(const char* name) {
    data_->set_view_matrix_uniform_name(name);
}

const char* GpuProgram::get_view_matrix_uniform_name() const {
    return data_->get_view_matrix_uniform_name();
}

void GpuProgram::set_projection_matrix_uniform_name(const char* name) {
    data_->set_projection_matrix_uniform_name(name);
}

const char* GpuProgram::get_projection_matrix_uniform_name() const {
    return data_->get_projection_matrix_uniform_name();
}

void GpuProgram::set_model_view_matrix_uniform_name(const char* name) {
    data_->set_model_view_matrix_uniform_name(name);
}

const char* GpuProgram::get_model_view_matrix_uniform_name() const {
    return data_->get_model_view_matrix_uniform_name();
}

void GpuProgram::set_model_view_projection_matrix_uniform_name(const char* name) {
    data_->set_model_view_projection_matrix_uniform_name(name);
}

const char* GpuProgram::get_model_view_projection_matrix_uniform_name() const {
    return data_->get_model_view_projection_matrix_uniform_name();
}

bool GpuProgram::set_vertex_attrib_name(unsigned int index, const char* name) {
    return data_->set_vertex_attrib_name(index, name);
}

const char* GpuProgram::get_vertex_attrib_name(unsigned int index) const {
    return data_->get_vertex_attrib_name(index);
}

void GpuProgram::set_use_generic_vertex_attribs_state(bool state) {
    data_->set_use_generic_vertex_attribs_state(state);
}

bool GpuProgram::get_use_generic_vertex_attribs_state() const {
    return data_->get_use_generic_vertex_attribs_state();
}

bool GpuProgram::ub_init(Renderer* renderer, const char* block_name) {
    if (!block_name)
        return false;
    if (!data_->uniform_buffer)
        data_->uniform_buffer = new UniformBufferData;
    UniformBufferData& block = *data_->uniform_buffer;
    std::memset(block.name, 0, UniformBufferData::NAME_SIZE);
    std::strncpy(block.name, block_name, UniformBufferData::NAME_SIZE - 1);
    const DebugName name(*this);
    return renderer && renderer->uniform_buffer_initialize(&block, data_->gl_program);
}

bool GpuProgram::ub_bind(Renderer* renderer) {
    return renderer && data_->uniform_buffer &&
           renderer->uniform_buffer_bind(data_->uniform_buffer);
}

bool GpuProgram::ub_bind_base(Renderer* renderer, unsigned int binding) {
    if (!data_->uniform_buffer)
        return false;
    data_->uniform_buffer->binding = binding;
    return renderer && renderer->uniform_buffer_bind_base(data_->uniform_buffer);
}

bool GpuProgram::ub_unbind(Renderer* renderer) {
    return renderer && data_->uniform_buffer &&
           renderer->uniform_buffer_unbind(data_->uniform_buffer);
}

void* GpuProgram::ub_map(Renderer* renderer) {
    if (!renderer || !data_->uniform_buffer)
        return nullptr;
    return renderer->uniform_buffer_map(data_->uniform_buffer);
}

bool GpuProgram::ub_unmap(Renderer* renderer) {
    return renderer && data_->uniform_buffer &&
           renderer->uniform_buffer_unmap(data_->uniform_buffer);
}

bool GpuProgram::ub_cleanup(Renderer* renderer) {
    if (!data_->uniform_buffer)
        return false;
    if (renderer)
        renderer->uniform_buffer_kill(data_->uniform_buffer);
    delete data_->uniform_buffer;
    data_->uniform_buffer = nullptr;
    return true;
}

bool GpuProgram::ub_set_value_ui64(Renderer*, unsigned long index, unsigned long long value) {
    const UniformBufferData* const block = data_->uniform_buffer;
    if (!block || !block->mapped)
        return false;
    const unsigned long size = block->mapped_size ? block->mapped_size : block->size;
    if (index >= size / sizeof value)
        return false;
    std::memcpy(static_cast<char*>(block->mapped) + index * sizeof value, &value, sizeof value);
    return true;
}

} // namespace orvex
