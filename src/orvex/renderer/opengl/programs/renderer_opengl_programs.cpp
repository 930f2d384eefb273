#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

namespace orvex {

namespace {

constexpr int NUM_GL_STAGES = 6;

bool is_stage_index(GPU_SHADER_TYPE type) {
    return type >= 0 && type < GPU_SHADER_TYPE_COUNT;
}

bool can_compile(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_entries(gl.glCreateShader, gl.glDeleteShader, gl.glShaderSource, gl.glCompileShader,
                       gl.glGetShaderiv, gl.glGetShaderInfoLog);
}

bool can_make_programs(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_entries(gl.glIsProgram, gl.glCreateProgram, gl.glDeleteProgram, gl.glAttachShader,
                       gl.glDetachShader);
}

} // namespace

unsigned int RendererOpenGL::_gpu_program_create_gl_shader(GPU_SHADER_TYPE type) {
    const GLenum gl_type = gl_shader_type(type);
    return gl_type != 0 && gl.glCreateShader != nullptr ? gl.glCreateShader(gl_type) : 0;
}

const char* RendererOpenGL::_gpu_program_get_shader_info_log(unsigned int shader) {
    if (!has_entries(gl.glGetShaderiv, gl.glGetShaderInfoLog))
        return nullptr;
    GLint length = 0;
    gl.glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    if (length < 1)
        return nullptr;
    const auto size = static_cast<std::size_t>(length);
    shader_log_buffer.assign(std::max(size + 2, shader_log_buffer.size()), '\0');
    gl.glGetShaderInfoLog(shader, length, nullptr, shader_log_buffer.data());
    return shader_log_buffer.data();
}

const char* RendererOpenGL::_gpu_program_get_info_log(unsigned int program) {
    if (!has_entries(gl.glGetProgramiv, gl.glGetProgramInfoLog))
        return nullptr;
    GLint length = 0;
    gl.glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
    if (length < 1)
        return nullptr;
    const auto size = static_cast<std::size_t>(length);
    program_log_buffer.assign(std::max(size + 1, program_log_buffer.size()), '\0');
    gl.glGetProgramInfoLog(program, length, nullptr, program_log_buffer.data());
    return program_log_buffer.data();
}

namespace {

void label_shader(const ORVEX_Renderer_OpenGL_Func& gl, GLuint shader, GPU_SHADER_TYPE type) {
    if (gl.object_label != nullptr) {
        const std::string use = std::string(GetGpuShaderTypeLabel(type)) + " shader";
        label_gl_object(gl, GL_SHADER, shader, use.c_str());
    }
}

} // namespace

bool RendererOpenGL::compile_shader(unsigned int shader, const char* source) {
    GLint status = 0;
    gl.glShaderSource(shader, 1, &source, nullptr);
    gl.glCompileShader(shader);
    gl.glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    return status != 0;
}

void RendererOpenGL::keep_shader_log(GpuProgramData* program, GPU_SHADER_TYPE type,
                                     unsigned int shader) {
    if (const char* const log = _gpu_program_get_shader_info_log(shader))
        program->set_shader_info_log(type, log, std::strlen(log));
}

bool RendererOpenGL::gpu_program_load_shader_from_memory(GpuProgramData* program,
                                                         GPU_SHADER_TYPE type, const char* source,
                                                         unsigned long size) {
    if (!program || !source || size == 0 || !is_stage_index(type))
        return false;
    if (!can_compile(gl) || !can_make_programs(gl))
        return false;
    unsigned int old_shader = program->shader_ids[type];
    if (!gl.glIsProgram(program->gl_program)) {
        program->gl_program = gl.glCreateProgram();
        label_gl_object(gl, GL_PROGRAM, program->gl_program, "program");
        program->update_thread();
        program->renderer_id = getid();
        old_shader = 0; // its name went with the lost program, and may be another's by now
    }
    const unsigned int shader = gl.glCreateShader(gl_shader_type(type));
    label_shader(gl, shader, type);
    program->shader_ids[type] = shader;
    // The stage loaded before stays attached, and links along; flagged here, it dies with the
    // program.
    if (old_shader != 0)
        gl.glDeleteShader(old_shader);
    if (shader == 0)
        return false;
    if (!compile_shader(shader, source)) {
        keep_shader_log(program, type, shader);
        gl.glDeleteShader(shader);
        program->shader_ids[type] = 0;
        return false;
    }
    gl.glAttachShader(program->gl_program, shader);
    return true;
}

bool RendererOpenGL::gpu_program_get_shader_compile_status(GPU_SHADER_TYPE type, const char* source,
                                                           char* message,
                                                           unsigned long message_size) {
    if (!source || !can_compile(gl))
        return false;
    const unsigned int shader = _gpu_program_create_gl_shader(type);
    const bool compiled = shader != 0 && compile_shader(shader, source);
    if (!compiled && message && message_size != 0) {
        const char* const log = shader != 0 ? _gpu_program_get_shader_info_log(shader) : nullptr;
        std::strncpy(message, log ? log : "", message_size - 1);
        message[message_size - 1] = '\0';
    }
    if (shader != 0)
        gl.glDeleteShader(shader);
    return compiled;
}

bool RendererOpenGL::gpu_program_update_shader(GpuProgramData* program, GPU_SHADER_TYPE type,
                                               const char* source, unsigned long size) {
    if (!program || !source || size == 0 || !can_compile(gl) || !can_make_programs(gl))
        return false;
    const unsigned int shader = _gpu_program_create_gl_shader(type);
    if (shader == 0)
        return false;
    label_shader(gl, shader, type);
    if (!compile_shader(shader, source)) {
        keep_shader_log(program, type, shader);
        gl.glDeleteShader(shader);
        return false;
    }
    if (program->shader_ids[type] != 0) {
        gl.glDetachShader(program->gl_program, program->shader_ids[type]);
        gl.glDeleteShader(program->shader_ids[type]);
    }
    program->shader_ids[type] = shader;
    return gpu_program_recreate_program(program);
}

void RendererOpenGL::attach_shaders(GpuProgramData* program) {
    for (int stage = 0; stage < NUM_GL_STAGES; ++stage)
        if (program->shader_ids[stage] != 0)
            gl.glAttachShader(program->gl_program, program->shader_ids[stage]);
}

bool RendererOpenGL::gpu_program_recreate_program(GpuProgramData* program) {
    if (!program || program->gl_program == 0 || !can_make_programs(gl))
        return false;
    gl.glDeleteProgram(program->gl_program);
    program->gl_program = gl.glCreateProgram();
    label_gl_object(gl, GL_PROGRAM, program->gl_program, "program");
    program->renderer_id = getid();
    attach_shaders(program);
    program->linked = false;
    return true;
}

bool RendererOpenGL::gpu_program_kill(GpuProgramData* program) {
    if (!program || program->gl_program == 0 ||
        !has_entries(gl.glDetachShader, gl.glDeleteShader, gl.glDeleteProgram))
        return false;
    // Every draw reads the active program: it must not outlive its record.
    if (ctx.active_program == program)
        gpu_program_deactivate(nullptr);
    for (unsigned int& shader : program->shader_ids) {
        if (shader != 0) {
            gl.glDetachShader(program->gl_program, shader);
            gl.glDeleteShader(shader);
            shader = 0;
        }
    }
    gl.glDeleteProgram(program->gl_program);
    program->gl_program = 0;
    program->linked = false;
    return true;
}

namespace {

// A link sets all values in the API to zero and may move them: each is looked up and sent anew.
void forget_locations(GpuProgramData* program) {
    program->uniforms_optimized = false;
    for (unsigned long i = 0; i < program->num_uniforms; ++i)
        if (program->uniforms[i])
            program->uniforms[i]->location = -1;
}

} // namespace

bool RendererOpenGL::gpu_program_link(GpuProgramData* program) {
    if (!program)
        return false;
    if (program->linked)
        return true;
    if (!has_entries(gl.glLinkProgram, gl.glGetProgramiv, gl.glGetProgramInfoLog))
        return false;
    GLint status = 0;
    gl.glLinkProgram(program->gl_program);
    gl.glGetProgramiv(program->gl_program, GL_LINK_STATUS, &status);
    if (status == 0) {
        if (const char* const log = _gpu_program_get_info_log(program->gl_program))
            program->set_info_log(log, std::strlen(log));
        return false;
    }
    forget_locations(program);
    program->linked = true;
    return true;
}

void RendererOpenGL::set_active_program(GpuProgramData* program) {
    ctx.active_program_id = program ? program->gl_program : 0;
    if (ctx.active_program == program)
        return;
    if (ctx.active_program)
        ctx.active_program->remove_active_slot(&ctx.active_program);
    ctx.active_program = program;
    if (program)
        program->add_active_slot(&ctx.active_program);
}

bool RendererOpenGL::gpu_program_activate(GpuProgramData* program) {
    if (!program)
        return gpu_program_deactivate(nullptr);
    if (gl.glUseProgram == nullptr || !gpu_program_link(program))
        return false;
    // Where an attribute stands is known of a linked program only; moving it takes another link.
    gpu_program_update_core_vertex_attrib_locations(program);
    gpu_program_update_instancing_vertex_attrib_locations(program);
    if (!gpu_program_link(program))
        return false;
    set_active_program(program);
    gl.glUseProgram(program->gl_program);
    gpu_program_bind_uniforms(program);
    return true;
}

bool RendererOpenGL::gpu_program_deactivate(GpuProgramData*) {
    set_active_program(nullptr);
    if (gl.glUseProgram != nullptr)
        gl.glUseProgram(0);
    return true;
}

GpuProgramData* RendererOpenGL::gpu_program_get_active_program() {
    return ctx.active_program;
}

bool RendererOpenGL::gpu_program_get_validate_status(GpuProgramData* program) {
    if (!program || !has_entries(gl.glValidateProgram, gl.glGetProgramiv))
        return false;
    GLint status = 0;
    gl.glValidateProgram(program->gl_program);
    gl.glGetProgramiv(program->gl_program, GL_VALIDATE_STATUS, &status);
    return status == 1;
}

bool RendererOpenGL::gpu_program_run_compute(GpuProgramData* program, unsigned int x,
                                             unsigned int y, unsigned int z) {
    if (!program || gl.glDispatchCompute == nullptr)
        return false;
    gpu_program_bind_uniforms(program);
    gl.glDispatchCompute(x, y, z);
    return true;
}

} // namespace orvex
