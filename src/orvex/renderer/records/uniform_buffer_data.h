#pragma once

#include <vector>

namespace orvex {

/// What a uniform block has in one group of contexts.
struct UniformBufferObject {
    unsigned long long group = 0;  ///< number of the group
    unsigned int buffer = 0;       ///< API buffer name, 0 for none
    unsigned int size = 0;         ///< bytes of the block's data
    unsigned int block_index = 0;  ///< the block's index in the group's program
    void* mapped = nullptr;        ///< the mapped store, null while it isn't mapped
    unsigned long mapped_size = 0; ///< bytes mapped; 0 stands for the whole block
};

/// One uniform block of a GPU program and the API buffer behind it.
///
/// A `GpuProgram` makes it in `ub_init`, its `GpuProgramData` owns it, and the back end writes the
/// ids. Only the thread whose graphics context is current may touch it.
struct UniformBufferData {
    /// Room for the block's name with its terminator.
    static constexpr unsigned long NAME_SIZE = 64;

    unsigned int buffer = 0;      ///< API buffer name, 0 for none
    unsigned int binding = 0;     ///< binding point of the block
    unsigned int size = 0;        ///< bytes of the block's data, as the API reports them
    unsigned int block_index = 0; ///< the block's index in its program
    char name[NAME_SIZE] = {};    ///< block name, always terminated
    bool bound = false;           ///< bound since the last unbind; a second bind is passed over
    void* mapped = nullptr;       ///< the mapped store, null while it isn't mapped
    unsigned long long gl_context = 0;  ///< number of the context that `bound` speaks of
    unsigned long long gl_group = 0;    ///< number of the group of contexts that has the buffer
    unsigned char gl_group_kinship = 0; ///< how its contexts are known; 0: not at all
    unsigned long mapped_size = 0;      ///< bytes mapped; 0 stands for the whole block
    std::vector<UniformBufferObject> gl_elsewhere; ///< what the block has in other groups
};

} // namespace orvex
