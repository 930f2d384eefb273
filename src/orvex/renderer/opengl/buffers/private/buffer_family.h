#pragma once

/// @file
/// The family of buffers that a host holds by their ids: vertex, shader storage and atomic counter
/// buffers.

#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Makes, maps and binds buffers by id. What each operation does is told in `Renderer`.
///
/// Nothing is remembered here about a buffer. What a mapping needs bound is bound anew where
/// anything may have been bound since, but for atomic counters, whose operations act on the buffer
/// that the host has bound.
class BufferFamily {
public:
    explicit BufferFamily(GlState& state)
        : state(state) {}

    void force_vertex_usage(BUFFER_OBJECT_USAGE vertex_usage, BUFFER_OBJECT_USAGE index_usage);
    unsigned int create_vertices(unsigned long size, BUFFER_OBJECT_USAGE usage);
    bool kill_vertices(unsigned int id);
    bool invalidate_vertices(unsigned int id, unsigned long size, BUFFER_OBJECT_USAGE usage);
    void* map_vertices(unsigned int id);
    bool unmap_vertices(unsigned int id);

    void force_storage_usage(BUFFER_OBJECT_USAGE usage);
    unsigned int create_storage(unsigned long size, BUFFER_OBJECT_USAGE usage, void* data);
    void* map_storage(unsigned int id);
    void* map_storage_range(unsigned int id, unsigned long offset, unsigned long length);
    bool unmap_storage(unsigned int id);
    bool bind_storage(unsigned int id);
    bool bind_storage_base(unsigned int id, unsigned int binding);

    void force_counter_usage(BUFFER_OBJECT_USAGE usage);
    unsigned int create_counters(unsigned long num_counters, BUFFER_OBJECT_USAGE usage,
                                 unsigned int binding, void* data);
    bool kill_counters(unsigned int id);
    bool bind_counters(unsigned int id);
    bool bind_counters_base(unsigned int id, unsigned int binding);
    bool set_counter(unsigned int value, unsigned long index);
    unsigned int get_counter(unsigned long index);
    void* map_counters(unsigned int id);
    void* map_counters_range(unsigned int id, unsigned long offset, unsigned long length);
    bool unmap_counters(unsigned int id);

    void memory_barrier(unsigned int bits);

private:
    GlState& state;
};

} // namespace orvex
