#pragma once

/// @file
/// How large a model may become.

#include <cstdint>

#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/private/build_model.h"

namespace orvex::formats {

/// What a few letters of JSON can ask for has no bound: a mesh that stands in a million places, an
/// accessor of zeros. So what is made is counted, and has to stay in a proportion to what is read;
/// and before anything is made, what all of it comes to.
class GltfBudget {
public:
    /// Bytes were read.
    void add_source(std::uint64_t bytes) {
        most = bytes > (UINT64_MAX - most) / factor ? UINT64_MAX : most + bytes * factor;
    }

    /// Bytes are told of that aren't read yet.
    void add_promise(std::uint64_t bytes) {
        promised = bytes > UINT64_MAX / factor - promised ? UINT64_MAX / factor : promised + bytes;
    }
    /// Whether a model may become so large, if all is there that is told of.
    bool allows(std::uint64_t size) const {
        const std::uint64_t more = promised * factor;
        return size <= (more > UINT64_MAX - most ? UINT64_MAX : most + more);
    }

    /// Bytes are about to be made. @throw Refusal  when they get too many
    void take(std::uint64_t bytes, const Json& by) {
        if (bytes > most - taken)
            by.refuse("the model would become far larger than its file");
        taken += bytes;
    }
    /// So many of so many bytes each.
    void take(std::uint64_t count, std::uint64_t size, const Json& by) {
        std::uint64_t bytes = 0;
        if (__builtin_mul_overflow(count, size, &bytes))
            bytes = UINT64_MAX;
        take(bytes, by);
    }

private:
    static constexpr std::uint64_t factor = 64;

    std::uint64_t most = most_of_model(0);
    std::uint64_t promised = 0;
    std::uint64_t taken = 0;
};

} // namespace orvex::formats
