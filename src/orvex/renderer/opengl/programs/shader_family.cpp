#include "orvex/renderer/opengl/programs/private/shader_family.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/gpu_program_data.h"

namespace orvex {

bool ShaderFamily::can_compile() const {
    return has_entries(gl.glCreateShader, gl.glDeleteShader, gl.glShaderSource, gl.glCompileShader,
                       gl.glGetShaderiv, gl.glGetShaderInfoLog);
}

GLuint ShaderFamily::make(GPU_SHADER_TYPE type) const {
    const GLenum gl_type = gl_shader_type(type);
    return gl_type != 0 && gl.glCreateShader ? gl.glCreateShader(gl_type) : 0;
}

void ShaderFamily::label(GLuint shader, GPU_SHADER_TYPE type) const {
    if (gl.object_label) {
        const std::string use = std::string(GetGpuShaderTypeLabel(type)) + " shader";
        label_gl_object(gl, GL_SHADER, shader, use.c_str());
    }
}

bool ShaderFamily::compile(GLuint shader, const char* source) const {
    GLint status = 0;
    gl.glShaderSource(shader, 1, &source, nullptr);
    gl.glCompileShader(shader);
    gl.glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    return status != 0;
}

const char* ShaderFamily::log(GLuint shader) {
    if (!has_entries(gl.glGetShaderiv, gl.glGetShaderInfoLog))
        return nullptr;
    GLint length = 0;
    gl.glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    if (length < 1)
        return nullptr;
    const auto size = static_cast<std::size_t>(length);
    log_buffer.assign(std::max(size + 2, log_buffer.size()), '\0');
    gl.glGetShaderInfoLog(shader, length, nullptr, log_buffer.data());
    return log_buffer.data();
}

void ShaderFamily::keep_log(GpuProgramData* program, GPU_SHADER_TYPE type, GLuint shader) {
    if (const char* const text = log(shader))
        program->set_shader_info_log(type, text, std::strlen(text));
}

bool ShaderFamily::compiles(GPU_SHADER_TYPE type, const char* source, char* message,
                            unsigned long message_size) {
    if (!source || !can_compile())
        return false;
    const GLuint shader = make(type);
    const bool compiled = shader != 0 && compile(shader, source);
    if (!compiled && message && message_size != 0) {
        const char* const text = shader != 0 ? log(shader) : nullptr;
        std::strncpy(message, text ? text : "", message_size - 1);
        message[message_size - 1] = '\0';
    }
    if (shader != 0)
        gl.glDeleteShader(shader);
    return compiled;
}

} // namespace orvex
