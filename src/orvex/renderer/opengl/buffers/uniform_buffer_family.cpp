// Uniform blocks of a program and the buffers behind them. A block is initialized only where every
// entry point of its life is there, so that it can be ended as well.

#include "orvex/renderer/opengl/buffers/private/uniform_buffer_family.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/records/uniform_buffer_data.h"

namespace orvex {

void UniformBufferFamily::force_usage(BUFFER_OBJECT_USAGE usage) {
    state.forced_uniform_usage = usage;
}

void UniformBufferFamily::bind_uniform_buffer(unsigned int id) {
    state.gl.glBindBuffer(GL_UNIFORM_BUFFER, id);
    state.context().bound_uniforms = id;
}

namespace {

UniformBufferObject object_of(const UniformBufferData& block) {
    return {block.gl_group,    block.buffer, block.size,
            block.block_index, block.mapped, block.mapped_size};
}

void set_object(UniformBufferData& block, const UniformBufferObject& object) {
    block.buffer = object.buffer;
    block.size = object.size;
    block.block_index = object.block_index;
    block.mapped = object.mapped;
    block.mapped_size = object.mapped_size;
}

/// Puts a block's buffer aside, and takes up what the block has in another group.
void step_into(const ShareGroup& group, UniformBufferData& block) {
    std::vector<UniformBufferObject>& elsewhere = block.gl_elsewhere;
    if (block.buffer != 0)
        elsewhere.push_back(object_of(block));
    std::erase_if(elsewhere, [](const UniformBufferObject& object) {
        return !contexts::find_group(object.group);
    });
    const auto kept =
        std::find_if(elsewhere.begin(), elsewhere.end(), [&](const UniformBufferObject& object) {
            return object.group == group.number;
        });
    if (kept != elsewhere.end()) {
        set_object(block, *kept);
        elsewhere.erase(kept);
    } else if (block.buffer != 0) {
        set_object(block, {});
    }
    block.gl_group = group.number;
    block.gl_group_kinship = static_cast<unsigned char>(group.kinship);
}

} // namespace

/// Makes the block's buffer that of the current context, or none. Its mark speaks of the context
/// that it was bound in.
/// @return whether it has one
bool UniformBufferFamily::enter_context(UniformBufferData& block) {
    state.follow_context();
    const ContextState& here = state.context();
    if (block.gl_context != 0 && block.gl_context != here.number)
        block.bound = false;
    block.gl_context = here.number;
    // Whether a host's contexts share can't always be told.
    const bool is_elsewhere = block.gl_group != 0 && block.gl_group != here.group->number &&
                              here.group->is_apart_from(Kinship{block.gl_group_kinship});
    if (is_elsewhere || block.buffer == 0)
        step_into(*here.group, block);
    return block.buffer != 0;
}

bool UniformBufferFamily::can_initialize() const {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    return has_entries(gl.glGetUniformBlockIndex, gl.glGetActiveUniformBlockiv,
                       gl.glUniformBlockBinding, gl.glGenBuffers, gl.glDeleteBuffers,
                       gl.glBindBuffer, gl.glBufferData, gl.glBindBufferBase);
}

bool UniformBufferFamily::initialize(UniformBufferData* block, unsigned int program) {
    if (!block || !can_initialize())
        return false;
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    const GLuint index = gl.glGetUniformBlockIndex(program, block->name);
    if (index == GL_INVALID_INDEX)
        return false;

    // The buffer before, if any, may have another size.
    state.look_at_context();
    if (enter_context(*block))
        delete_here(*block);
    block->block_index = index;
    GLint size = 0;
    gl.glGetActiveUniformBlockiv(program, index, GL_UNIFORM_BLOCK_DATA_SIZE, &size);
    block->size = static_cast<unsigned int>(size);
    // Without a forced usage the buffer is for reading, whatever its name says.
    const BUFFER_OBJECT_USAGE usage = state.forced_uniform_usage != BUFFER_USAGE_DEFAULT
                                          ? state.forced_uniform_usage
                                          : BUFFER_USAGE_STATIC_READ;
    block->buffer =
        create_buffer(gl, GL_UNIFORM_BUFFER, "uniforms", static_cast<unsigned long>(size), nullptr,
                      gl_buffer_usage(usage));
    if (block->buffer == 0)
        return false;

    // The block of the program and the buffer meet at the binding point.
    gl.glBindBufferBase(GL_UNIFORM_BUFFER, block->binding, block->buffer);
    gl.glUniformBlockBinding(program, index, block->binding);
    bind_uniform_buffer(0);
    return true;
}

void UniformBufferFamily::delete_here(UniformBufferData& block) {
    state.gl.glDeleteBuffers(1, &block.buffer);
    if (state.context().bound_uniforms == block.buffer)
        state.context().bound_uniforms = 0;
    block.buffer = 0;
    block.bound = false;
    block.mapped = nullptr;
    block.mapped_size = 0;
}

bool UniformBufferFamily::kill(UniformBufferData* block) {
    if (!block || !state.gl.glDeleteBuffers)
        return false;
    state.look_at_context();
    const bool is_here = enter_context(*block);
    if (is_here)
        delete_here(*block);
    const bool was_elsewhere = !block->gl_elsewhere.empty();
    for (const UniformBufferObject& object : block->gl_elsewhere) {
        BuriedObjects buried;
        buried.buffers.push_back(object.buffer);
        contexts::bury(object.group, buried);
    }
    block->gl_elsewhere.clear();
    return is_here || was_elsewhere;
}

void* UniformBufferFamily::map(UniformBufferData* block) {
    if (!block || !has_entries(state.gl.glBindBuffer, state.gl.glMapBuffer) ||
        !enter_context(*block))
        return nullptr;
    bind(block);
    // A block that is bound stays so when another one is; what is mapped has to be this one's.
    if (state.context().bound_uniforms != block->buffer)
        bind_uniform_buffer(block->buffer);
    block->mapped = state.gl.glMapBuffer(GL_UNIFORM_BUFFER, GL_WRITE_ONLY);
    block->mapped_size = block->mapped ? block->size : 0;
    return block->mapped;
}

void* UniformBufferFamily::map_range(UniformBufferData* block, unsigned long offset,
                                     unsigned long length) {
    if (!block || !state.gl.glMapBufferRange || !enter_context(*block))
        return nullptr;
    block->mapped = state.gl.glMapBufferRange(GL_UNIFORM_BUFFER, static_cast<GLintptr>(offset),
                                              static_cast<GLsizeiptr>(length),
                                              GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
    block->mapped_size = block->mapped ? length : 0;
    return block->mapped;
}

bool UniformBufferFamily::unmap(UniformBufferData* block) {
    if (!block)
        return false;
    const bool is_here = enter_context(*block);
    const bool was_mapped = std::exchange(block->mapped, nullptr) != nullptr;
    block->mapped_size = 0;
    if (!is_here || !was_mapped || !has_entries(state.gl.glBindBuffer, state.gl.glUnmapBuffer))
        return false;
    bind_uniform_buffer(block->buffer);
    return state.gl.glUnmapBuffer(GL_UNIFORM_BUFFER) == GL_TRUE;
}

bool UniformBufferFamily::bind(UniformBufferData* block) {
    if (!block || !state.gl.glBindBuffer || !enter_context(*block))
        return false;
    if (!block->bound) {
        bind_uniform_buffer(block->buffer);
        block->bound = true;
    }
    return true;
}

bool UniformBufferFamily::bind_base(UniformBufferData* block) {
    if (!block || !state.gl.glBindBufferBase || !enter_context(*block))
        return false;
    if (!block->bound) {
        state.gl.glBindBufferBase(GL_UNIFORM_BUFFER, block->binding, block->buffer);
        state.context().bound_uniforms = block->buffer;
        block->bound = true;
    }
    return true;
}

bool UniformBufferFamily::unbind(UniformBufferData* block) {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (!has_entries(gl.glBindBuffer, gl.glBindBufferBase))
        return false;
    if (block) {
        block->bound = false;
        gl.glBindBufferBase(GL_UNIFORM_BUFFER, block->binding, 0);
    }
    bind_uniform_buffer(0);
    return true;
}

} // namespace orvex
