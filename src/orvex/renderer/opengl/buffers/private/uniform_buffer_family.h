#pragma once

/// @file
/// The family of uniform buffers.

#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Gives the uniform blocks of programs their buffers. What each operation does is told in
/// `Renderer`.
///
/// A block that is bound stays marked so until it is unbound, and a second bind is passed over.
/// What the API's target really holds is remembered here, because a mapping goes to that one.
class UniformBufferFamily {
public:
    explicit UniformBufferFamily(GlState& state)
        : state(state) {}

    void force_usage(BUFFER_OBJECT_USAGE usage);
    bool initialize(UniformBufferData* block, unsigned int program);
    bool kill(UniformBufferData* block);
    void* map(UniformBufferData* block);
    void* map_range(UniformBufferData* block, unsigned long offset, unsigned long length);
    bool unmap(UniformBufferData* block);
    bool bind(UniformBufferData* block);
    bool bind_base(UniformBufferData* block);
    bool unbind(UniformBufferData* block);

private:
    bool can_initialize() const;
    bool enter_context(UniformBufferData& block);
    void delete_here(UniformBufferData& block);
    void bind_uniform_buffer(unsigned int id);

    GlState& state;
};

} // namespace orvex
