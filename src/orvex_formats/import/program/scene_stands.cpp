#include "orvex_formats/import/program/scene_stands.h"

#include <algorithm>
#include <cmath>

#include <assimp/anim.h>
#include <assimp/scene.h>

namespace orvex::formats {

namespace {

std::string_view words_of(const aiString& text) {
    return {text.data, std::min<std::size_t>(text.length, sizeof text.data)};
}

/// How many ticks of an animation a second has, where the file doesn't say.
constexpr double usual_ticks = 25.0;

double ticks_of(const aiAnimation& animation, float time) {
    const double told = animation.mTicksPerSecond;
    return static_cast<double>(time) * (told > 0.0 && std::isfinite(told) ? told : usual_ticks);
}

aiVector3D between(const aiVector3D& from, const aiVector3D& to, float part) {
    return from + (to - from) * part;
}

/// The shorter way round, at an even speed.
aiQuaternion between(const aiQuaternion& from, const aiQuaternion& to, float part) {
    aiQuaternion turn;
    aiQuaternion::Interpolate(turn, from, to, part);
    return turn;
}

/// The value of a moment among key frames, of which there is one at least.
template<class Key>
auto value_at(const Key* keys, unsigned count, double ticks) {
    const Key* const end = keys + count;
    const Key* const behind = std::upper_bound(
        keys, end, ticks, [](double moment, const Key& key) { return moment < key.mTime; });
    if (behind == keys || behind == end)
        return behind == keys ? keys->mValue : end[-1].mValue;
    const double length = behind->mTime - behind[-1].mTime;
    const double part = length > 0.0 ? (ticks - behind[-1].mTime) / length : 0.0;
    return between(behind[-1].mValue, behind->mValue, static_cast<float>(part));
}

/// A node as an animation has it. What the animation doesn't move stays.
aiMatrix4x4 moved(const aiMatrix4x4& rest, const aiNodeAnim& channel, double ticks) {
    aiVector3D scale, place;
    aiQuaternion turn;
    rest.Decompose(scale, turn, place);
    if (channel.mNumScalingKeys > 0)
        scale = value_at(channel.mScalingKeys, channel.mNumScalingKeys, ticks);
    if (channel.mNumRotationKeys > 0)
        turn = value_at(channel.mRotationKeys, channel.mNumRotationKeys, ticks).Normalize();
    if (channel.mNumPositionKeys > 0)
        place = value_at(channel.mPositionKeys, channel.mNumPositionKeys, ticks);
    return {scale, turn, place};
}

} // namespace

SceneStands::SceneStands(const aiScene& scene, const aiMatrix4x4& turn, std::optional<float> time) {
    if (time && scene.mNumAnimations > 0) {
        const aiAnimation& animation = *scene.mAnimations[0];
        ticks = ticks_of(animation, *time);
        for (unsigned i = 0; i < animation.mNumChannels; ++i)
            channels.emplace(words_of(animation.mChannels[i]->mNodeName), animation.mChannels[i]);
    }
    std::vector<Stand> waiting = {{scene.mRootNode, turn}};
    while (!waiting.empty()) {
        const Stand next = waiting.back(); // in its parent's place yet
        waiting.pop_back();
        if (!next.node)
            continue;
        places.emplace(words_of(next.node->mName), stands.size());
        stands.push_back({next.node, next.world * local(*next.node)});
        for (unsigned i = next.node->mNumChildren; i-- > 0;)
            waiting.push_back({next.node->mChildren[i], stands.back().world});
    }
}

aiMatrix4x4 SceneStands::local(const aiNode& node) const {
    const auto channel = channels.find(words_of(node.mName));
    return channel == channels.end() ? node.mTransformation
                                     : moved(node.mTransformation, *channel->second, ticks);
}

const Stand* SceneStands::find(std::string_view name) const {
    const auto place = places.find(name);
    return place == places.end() ? nullptr : &stands[place->second];
}

} // namespace orvex::formats
