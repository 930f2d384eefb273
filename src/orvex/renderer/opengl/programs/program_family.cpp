#include "orvex/renderer/opengl/programs/private/program_family.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

// A stage that takes another's place is compiled before anything of the program changes. A compile
// or a link that fails leaves its reason in the record.

namespace orvex {

ProgramFamily::ProgramFamily(GlState& state, const AttributeFamily& attributes,
                             const UniformFamily& uniforms)
    : shaders(state)
    , state(state)
    , gl(state.gl)
    , attributes(attributes)
    , uniforms(uniforms) {}

ProgramFamily::~ProgramFamily() {
    RendererOpenGLCtx& ctx = state.ctx;
    if (ctx.active_program)
        ctx.active_program->remove_active_slot(&ctx.active_program);
}

// Contexts

namespace {

GpuProgramObjects objects_of(const GpuProgramData& program) {
    GpuProgramObjects objects{
        program.gl_group, program.gl_program,           {},
        program.linked,   program.core_attribs_pending, program.instancing_attribs_pending};
    std::copy(std::begin(program.shader_ids), std::end(program.shader_ids), objects.shaders);
    return objects;
}

void set_objects(GpuProgramData& program, const GpuProgramObjects& objects) {
    program.gl_program = objects.program;
    std::copy(std::begin(objects.shaders), std::end(objects.shaders), program.shader_ids);
    program.linked = objects.linked;
    program.core_attribs_pending = objects.core_attribs_pending;
    program.instancing_attribs_pending = objects.instancing_attribs_pending;
}

/// What a program has in other groups ends when one of their contexts is met.
bool bury_elsewhere(GpuProgramData& program) {
    const bool any = !program.gl_elsewhere.empty();
    for (const GpuProgramObjects& objects : program.gl_elsewhere) {
        BuriedObjects buried;
        buried.programs.push_back(objects.program);
        std::copy_if(std::begin(objects.shaders), std::end(objects.shaders),
                     std::back_inserter(buried.shaders), [](GLuint id) { return id != 0; });
        contexts::bury(objects.group, buried);
    }
    program.gl_elsewhere.clear();
    return any;
}

// The values in the API are those of one program object: each is looked up and sent anew.
void forget_locations(GpuProgramData* program) {
    program->uniforms_optimized = false;
    for (unsigned long i = 0; i < program->num_uniforms; ++i)
        if (program->uniforms[i])
            program->uniforms[i]->location = -1;
    program->asked_in_stretch = 0;
}

} // namespace

/// Whether a host's contexts share can't always be told: there the name decides.
bool ProgramFamily::has_objects_here(const GpuProgramData& program) const {
    if (state.context().group->is_apart_from(Kinship{program.gl_group_kinship}))
        return false;
    return program.gl_program != 0 && gl.glIsProgram && gl.glIsProgram(program.gl_program);
}

/// Makes the names of a record those of the current context; none, where it wasn't loaded.
void ProgramFamily::enter_context(GpuProgramData& program) const {
    state.follow_context();
    if (program.gl_group == state.context().group->number)
        return;
    state.look_at_context();
    const ShareGroup& here = *state.context().group;
    if (program.gl_group == here.number)
        return;
    if (program.gl_group != 0 && (program.gl_program != 0 || !program.gl_elsewhere.empty())) {
        if (has_objects_here(program))
            return;
        std::vector<GpuProgramObjects>& elsewhere = program.gl_elsewhere;
        if (program.gl_program != 0)
            elsewhere.push_back(objects_of(program));
        std::erase_if(elsewhere, [](const GpuProgramObjects& objects) {
            return !contexts::find_group(objects.group);
        });
        const auto kept =
            std::find_if(elsewhere.begin(), elsewhere.end(), [&](const GpuProgramObjects& objects) {
                return objects.group == here.number;
            });
        program.gl_lost = kept == elsewhere.end();
        set_objects(program, program.gl_lost ? GpuProgramObjects() : *kept);
        if (!program.gl_lost)
            elsewhere.erase(kept);
        forget_locations(&program);
    }
    program.gl_group = here.number;
    program.gl_group_kinship = static_cast<unsigned char>(here.kinship);
}

// Program objects

bool ProgramFamily::can_make_programs() const {
    return has_entries(gl.glIsProgram, gl.glCreateProgram, gl.glDeleteProgram, gl.glAttachShader,
                       gl.glDetachShader);
}

void ProgramFamily::make_program_object(GpuProgramData* program) const {
    program->gl_program = gl.glCreateProgram();
    label_gl_object(gl, GL_PROGRAM, program->gl_program, "program");
    program->gl_lost = false;
    program->gl_link_told = false;
    program->renderer_id = state.renderer_id();
}

bool ProgramFamily::remake(GpuProgramData* program) const {
    if (!program || program->gl_program == 0 || !can_make_programs())
        return false;
    state.look_at_context();
    enter_context(*program);
    if (program->gl_lost)
        return false;
    gl.glDeleteProgram(program->gl_program);
    make_program_object(program);
    // The stages that the API has; the last two kinds have no shader objects.
    for (int stage = GPU_SHADER_VERTEX; stage <= GPU_SHADER_COMPUTE; ++stage)
        if (program->shader_ids[stage] != 0)
            gl.glAttachShader(program->gl_program, program->shader_ids[stage]);
    program->linked = false;
    return true;
}

/// Ends the stages that were put into a record before its program object was made.
void ProgramFamily::delete_stages(GpuProgramData& program) const {
    for (unsigned int& shader : program.shader_ids)
        if (const unsigned int id = std::exchange(shader, 0U))
            gl.glDeleteShader(id);
}

bool ProgramFamily::kill(GpuProgramData* program) {
    if (!program || !has_entries(gl.glDetachShader, gl.glDeleteShader, gl.glDeleteProgram))
        return false;
    state.look_at_context();
    enter_context(*program);
    const bool was_elsewhere = bury_elsewhere(*program);
    if (program->gl_program == 0) {
        delete_stages(*program);
        return was_elsewhere;
    }
    // Every draw reads the active program: it must not outlive its record.
    if (state.ctx.active_program == program)
        deactivate();
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

// Stages

namespace {

bool is_stage_index(GPU_SHADER_TYPE type) {
    return type >= 0 && type < GPU_SHADER_TYPE_COUNT;
}

} // namespace

bool ProgramFamily::load_stage(GpuProgramData* program, GPU_SHADER_TYPE type, const char* source,
                               unsigned long size) {
    if (!program || !source || size == 0 || !is_stage_index(type))
        return false;
    if (!shaders.can_compile() || !can_make_programs())
        return false;

    // The first stage makes the program, and so does one after the program object was lost. The
    // names of all stages went with it, and may be others' by now.
    state.look_at_context();
    enter_context(*program);
    if (!gl.glIsProgram(program->gl_program)) {
        if (program->gl_program == 0)
            delete_stages(*program);
        std::fill(std::begin(program->shader_ids), std::end(program->shader_ids), 0U);
        make_program_object(program);
        program->update_thread();
        if (program->gl_program == 0)
            return false;
    }
    const GLuint old_shader = program->shader_ids[type];

    // The API is asked for every kind of stage, and refuses those that it doesn't have.
    const GLuint shader = gl.glCreateShader(gl_shader_type(type));
    shaders.label(shader, type);
    program->shader_ids[type] = shader;
    // The stage loaded before stays attached, and links along; flagged here, it dies with the
    // program.
    if (old_shader != 0)
        gl.glDeleteShader(old_shader);
    if (shader == 0)
        return false;
    if (!shaders.compile(shader, source)) {
        shaders.keep_log(program, type, shader);
        gl.glDeleteShader(shader);
        program->shader_ids[type] = 0;
        return false;
    }
    gl.glAttachShader(program->gl_program, shader);
    return true;
}

bool ProgramFamily::replace_stage(GpuProgramData* program, GPU_SHADER_TYPE type, const char* source,
                                  unsigned long size) {
    if (!program || !source || size == 0 || !shaders.can_compile() || !can_make_programs())
        return false;
    const GLuint shader = shaders.make(type);
    if (shader == 0)
        return false;
    shaders.label(shader, type);
    if (!shaders.compile(shader, source)) {
        shaders.keep_log(program, type, shader);
        gl.glDeleteShader(shader);
        return false;
    }
    state.look_at_context();
    enter_context(*program);
    // It compiles: from here on the old stage goes.
    if (program->shader_ids[type] != 0) {
        gl.glDetachShader(program->gl_program, program->shader_ids[type]);
        gl.glDeleteShader(program->shader_ids[type]);
    }
    program->shader_ids[type] = shader;
    return remake(program);
}

// Links

const char* ProgramFamily::log(GLuint program) {
    if (!has_entries(gl.glGetProgramiv, gl.glGetProgramInfoLog))
        return nullptr;
    GLint length = 0;
    gl.glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
    if (length < 1)
        return nullptr;
    const auto size = static_cast<std::size_t>(length);
    log_buffer.assign(std::max(size + 1, log_buffer.size()), '\0');
    gl.glGetProgramInfoLog(program, length, nullptr, log_buffer.data());
    return log_buffer.data();
}

bool ProgramFamily::link(GpuProgramData* program) {
    if (!program)
        return false;
    enter_context(*program);
    if (program->gl_lost)
        return false;
    if (program->linked)
        return true;
    if (!has_entries(gl.glLinkProgram, gl.glGetProgramiv, gl.glGetProgramInfoLog))
        return false;
    GLint status = 0;
    gl.glLinkProgram(program->gl_program);
    gl.glGetProgramiv(program->gl_program, GL_LINK_STATUS, &status);
    if (status == 0) {
        if (const char* const text = log(program->gl_program))
            program->set_info_log(text, std::strlen(text));
        tell_link_failure(*program);
        return false;
    }
    // A link sets all values in the API to zero, and may move them.
    forget_locations(program);
    program->linked = true;
    return true;
}

/// A program that can't be linked draws nothing, frame after frame: once is enough.
void ProgramFamily::tell_link_failure(GpuProgramData& program) const {
    if (std::exchange(program.gl_link_told, true))
        return;
    const char* const reason = program.get_info_log();
    state.k_log_error("GPU program linking failed: %s", reason ? reason : "no reason told");
}

bool ProgramFamily::validate(const GpuProgramData* program) const {
    if (!program || program->gl_lost || !has_entries(gl.glValidateProgram, gl.glGetProgramiv))
        return false;
    GLint status = 0;
    gl.glValidateProgram(program->gl_program);
    gl.glGetProgramiv(program->gl_program, GL_VALIDATE_STATUS, &status);
    return status == 1;
}

// The active program

void ProgramFamily::set_active(GpuProgramData* program) {
    RendererOpenGLCtx& ctx = state.ctx;
    ctx.active_program_id = program ? program->gl_program : 0;
    if (ctx.active_program == program)
        return;
    if (ctx.active_program)
        ctx.active_program->remove_active_slot(&ctx.active_program);
    ctx.active_program = program;
    if (program)
        program->add_active_slot(&ctx.active_program);
}

bool ProgramFamily::activate(GpuProgramData* program) {
    if (!program)
        return deactivate();
    if (!gl.glUseProgram || !link(program))
        return false;
    // Where an attribute stands is known of a linked program only; moving it takes another link.
    if (program->core_attribs_pending || program->instancing_attribs_pending) {
        attributes.move_core(program);
        attributes.move_instancing(program);
        if (!link(program))
            return false;
    }
    set_active(program);
    if (!state.bound().resume_program(program->gl_program)) {
        gl.glUseProgram(program->gl_program);
        state.bound().program_was_bound(program->gl_program);
    }
    uniforms.send_table(program);
    return true;
}

bool ProgramFamily::deactivate() {
    set_active(nullptr);
    if (state.bound().hold_program())
        return true;
    if (gl.glUseProgram)
        gl.glUseProgram(0);
    return true;
}

bool ProgramFamily::dispatch(GpuProgramData* program, unsigned int x, unsigned int y,
                             unsigned int z) const {
    if (!program || program->gl_lost || !gl.glDispatchCompute)
        return false;
    uniforms.send_table(program);
    gl.glDispatchCompute(x, y, z);
    return true;
}

} // namespace orvex
