#pragma once

/// @file
/// How nodes stand at a moment of an animation.

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "orvex_formats/gltf/private/gltf_accessor.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_notes.h"

namespace orvex::formats {

/// What an animation changes of a node. What is none stays as the file has it.
struct GltfPose {
    std::optional<std::array<double, 3>> translation, scale;
    std::optional<std::array<double, 4>> rotation;
    std::optional<std::vector<double>> weights; ///< of the morph targets
};

/// The first animation of a file at one moment. Of each list of key frames no more is read than the
/// two around it.
class GltfAnimation {
public:
    /// At rest.
    GltfAnimation() = default;
    /// @param time  seconds; before the first key frame and behind the last one all stands still
    /// @throw Refusal
    GltfAnimation(const Json& root, float time, GltfAccessors& accessors, GltfNotes& notes);

    /// Null for a node that stays as it is.
    const GltfPose* pose_of(std::size_t node) const;

private:
    /// Where a moment lies among key frames.
    struct Moment {
        std::uint32_t before = 0, after = 0; ///< key frames; the same where all stands still
        double part = 0.0;                   ///< of the way from one to the other
        double length = 0.0;                 ///< of that way, in seconds
    };

    void add_channel(const Json& channel, const Json& samplers, std::size_t num_nodes);
    Moment moment_in(const Json& sampler);
    /// One value of a sampler, as many numbers as a key frame has.
    /// @param width  of an element of its accessor; 1 where key frames have several elements
    std::vector<double> sample(const Json& sampler, std::size_t width, bool is_turn);

    double time = 0.0;
    GltfAccessors* accessors = nullptr;
    GltfNotes* notes = nullptr;
    std::map<std::size_t, std::vector<float>> times; ///< by accessor
    std::map<std::size_t, GltfPose> poses;           ///< by node
};

} // namespace orvex::formats
