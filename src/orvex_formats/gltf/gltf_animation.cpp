#include "orvex_formats/gltf/private/gltf_animation.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

namespace orvex::formats {

GltfAnimation::GltfAnimation(const Json& root, float time, GltfAccessors& accessors,
                             GltfNotes& notes)
    : time(static_cast<double>(time))
    , accessors(&accessors)
    , notes(&notes) {
    const Json animations = root.list("animations");
    if (animations.size() == 0)
        return;
    if (animations.size() > 1)
        notes.add(animations, "animations but the first were left out");
    const Json channels = animations.at(0).list("channels");
    const Json samplers = animations.at(0).list("samplers");
    for (std::size_t i = 0; i < channels.size(); ++i)
        add_channel(channels.at(i), samplers, root.list("nodes").size());
    times.clear();
}

const GltfPose* GltfAnimation::pose_of(std::size_t node) const {
    const auto found = poses.find(node);
    return found == poses.end() ? nullptr : &found->second;
}

namespace {

template<std::size_t count>
std::array<double, count> first_of(const std::vector<double>& numbers) {
    std::array<double, count> first{};
    std::copy_n(numbers.begin(), count, first.begin());
    return first;
}

} // namespace

void GltfAnimation::add_channel(const Json& channel, const Json& samplers, std::size_t num_nodes) {
    const std::size_t number = channel.need("sampler").as_index(samplers.size(), "samplers");
    const Json sampler = samplers.at(number);
    const Json target = channel.need("target");
    const std::size_t node = target.index("node", num_nodes, "nodes");
    const std::string_view path = target.need("path").text();
    if (node == Json::no_index)
        return; // as the rules have it
    if (path == "translation")
        poses[node].translation = first_of<3>(sample(sampler, 3, false));
    else if (path == "scale")
        poses[node].scale = first_of<3>(sample(sampler, 3, false));
    else if (path == "rotation")
        poses[node].rotation = first_of<4>(sample(sampler, 4, true));
    else if (path == "weights")
        poses[node].weights = sample(sampler, 1, false);
    else
        notes->add(target, "what an animation moves beside nodes and morph targets stays");
}

// ------------------------------------------------------------------------------- key frames

GltfAnimation::Moment GltfAnimation::moment_in(const Json& sampler) {
    const Json input = sampler.need("input");
    const std::size_t accessor = input.as_index(accessors->size(), "accessors");
    if (accessors->width(accessor) != 1 || accessors->number(accessor) != GltfNumber::float32)
        input.refuse("accessor " + std::to_string(accessor) + " isn't one of times");
    auto known = times.find(accessor);
    if (known == times.end()) {
        known = times.emplace(accessor, accessors->floats(accessor)).first;
        const std::vector<float>& told = known->second;
        for (std::size_t i = 0; i < told.size(); ++i)
            if (!std::isfinite(told[i]) || (i > 0 && !(told[i] > told[i - 1])))
                input.refuse("time " + std::to_string(i) + " of accessor " +
                             std::to_string(accessor) +
                             " is no number, or isn't behind the one before");
    }
    const std::vector<float>& told = known->second; // one at least
    const auto last = static_cast<std::uint32_t>(told.size() - 1);
    const auto behind = static_cast<std::uint32_t>(
        std::upper_bound(told.begin(), told.end(), time,
                         [](double moment, float key) { return moment < double(key); }) -
        told.begin());
    if (behind == 0 || behind > last)
        return {std::min(behind, last), std::min(behind, last)};
    const auto begin = double(told[behind - 1]), end = double(told[behind]);
    return {behind - 1, behind, (time - begin) / (end - begin), end - begin};
}

namespace {

using Numbers = std::vector<double>;

constexpr std::uint64_t most_targets = 65536;

/// The shorter way from one turn to the other, at an even speed.
Numbers turned(Numbers from, const Numbers& to, double part) {
    double cosine = 0.0;
    for (std::size_t i = 0; i < 4; ++i)
        cosine += from[i] * to[i];
    const double sign = cosine < 0.0 ? -1.0 : 1.0;
    const double angle = std::acos(std::min(std::abs(cosine), 1.0)), sine = std::sin(angle);
    const bool is_tiny = !(sine > 1e-6);
    const double of_first = is_tiny ? 1.0 - part : std::sin((1.0 - part) * angle) / sine;
    const double of_second = is_tiny ? part : std::sin(part * angle) / sine;
    for (std::size_t i = 0; i < 4; ++i)
        from[i] = of_first * from[i] + sign * of_second * to[i];
    return from;
}

Numbers mixed(Numbers from, const Numbers& to, double part) {
    for (std::size_t i = 0; i < from.size(); ++i)
        from[i] += (to[i] - from[i]) * part;
    return from;
}

/// A cubic curve through two values with their slopes.
Numbers curved(Numbers from, const Numbers& slope_from, const Numbers& slope_to, const Numbers& to,
               double part, double length) {
    const double square = part * part, cube = square * part;
    for (std::size_t i = 0; i < from.size(); ++i)
        from[i] = (2 * cube - 3 * square + 1) * from[i] +
                  length * (cube - 2 * square + part) * slope_from[i] +
                  (-2 * cube + 3 * square) * to[i] + length * (cube - square) * slope_to[i];
    return from;
}

} // namespace

std::vector<double> GltfAnimation::sample(const Json& sampler, std::size_t width, bool is_turn) {
    const Moment moment = moment_in(sampler);
    const std::size_t num_keys =
        accessors->count(sampler.need("input").as_index(accessors->size(), "accessors"));
    const std::string_view way = sampler.text("interpolation", "LINEAR");
    if (way != "LINEAR" && way != "STEP" && way != "CUBICSPLINE")
        sampler.need("interpolation").refuse("no way from one key frame to the next");
    const bool is_cubic = way == "CUBICSPLINE";

    // A key frame of a curve has three values: the slope before, the value, the slope behind.
    const Json output = sampler.need("output");
    const std::size_t accessor = output.as_index(accessors->size(), "accessors");
    const std::uint64_t count = accessors->count(accessor);
    const std::uint64_t num_values = num_keys * (is_cubic ? 3 : 1);
    const bool is_list = width == 1;
    if (accessors->width(accessor) != width || count < num_values ||
        (is_list ? count % num_values != 0 : count != num_values))
        output.refuse("accessor " + std::to_string(accessor) + " isn't what " +
                      std::to_string(num_keys) + " key frames need");
    const std::uint64_t per_value = count / num_values;
    if (per_value > most_targets)
        output.refuse("more morph targets than any mesh has");
    const auto value = [&](std::uint64_t place) {
        std::vector<std::uint32_t> wanted;
        for (std::uint64_t i = 0; i < per_value; ++i)
            wanted.push_back(static_cast<std::uint32_t>(place * per_value + i));
        const std::vector<float> read = accessors->floats(accessor, &wanted);
        return Numbers(read.begin(), read.end());
    };

    const std::uint64_t before = moment.before, after = moment.after;
    const auto of_key = [&](std::uint64_t key) { return value(is_cubic ? 3 * key + 1 : key); };
    if (before == after || way == "STEP")
        return of_key(before);
    if (is_cubic)
        return curved(of_key(before), value(3 * before + 2), value(3 * after), of_key(after),
                      moment.part, moment.length);
    return is_turn ? turned(of_key(before), of_key(after), moment.part)
                   : mixed(of_key(before), of_key(after), moment.part);
}

} // namespace orvex::formats
