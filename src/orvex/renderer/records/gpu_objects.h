#pragma once

/// @file
/// What a record remembers of its GPU objects in other contexts than that of its last draw.
///
/// The names of GPU objects mean something in one context only, or in a group of contexts that
/// share. The id fields of a record hold those of the context that it was drawn in last; what it
/// has in the other ones stands here, so that a scene that is drawn in two windows in turns is
/// uploaded to each of them once. A back end writes all of it, and hosts have no use for it.

#include <vector>

namespace orvex {

/// A vertex array of a record in one context.
struct GpuVertexArray {
    unsigned long long context = 0;  ///< number of the context; 0 for none
    unsigned long long group = 0;    ///< number of its group
    unsigned int id = 0;             ///< name of the object
    unsigned int vertex_buffer = 0;  ///< vertex buffer that it points into
    unsigned int element_buffer = 0; ///< element buffer bound inside it
    unsigned long instances = 0;     ///< which instance arrays it points into
    bool stale = false;              ///< its pointers no longer fit
};

/// The buffers of a record in one group of contexts, in an order that the record's kind has.
struct GpuBuffers {
    unsigned long long group = 0;    ///< number of the group; 0 for none
    unsigned int ids[4] = {};        ///< names of the objects, 0 for none
    unsigned long bytes[4] = {};     ///< sizes last allocated
    unsigned long layout = 0;        ///< how they are divided, by the record's kind
    unsigned long long outdated = 0; ///< a bit for each part that changed since
};

/// The GPU objects of a record in all contexts but that of its last draw.
struct GpuObjectsElsewhere {
    std::vector<GpuVertexArray> arrays; ///< one a context
    std::vector<GpuBuffers> buffers;    ///< one a group
};

} // namespace orvex
