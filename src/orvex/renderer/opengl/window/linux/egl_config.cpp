#include "orvex/renderer/opengl/window/linux/private/egl_config.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "orvex/renderer/opengl/window/private/window_platform.h"

// EGL is asked for configurations with at least the wanted bits. Of those it gives, the nearest go
// first: EGL's own order prefers more.

namespace orvex {

EglConfigFacts wanted_facts(const ContextRequest& request) {
    EglConfigFacts facts{8, 8, 8, 8, request.depth_bits, request.stencil_bits, request.samples};
    if (request.color_bits == 24)
        facts.alpha = 0;
    if (request.color_bits == 16) {
        facts.red = 5;
        facts.green = 6;
        facts.blue = 5;
        facts.alpha = 0;
    }
    return facts;
}

namespace {

std::array<int, 5> distances(const EglConfigFacts& wish, const EglConfigFacts& facts) {
    return {std::abs(facts.red - wish.red) + std::abs(facts.green - wish.green) +
                std::abs(facts.blue - wish.blue),
            std::abs(facts.alpha - wish.alpha), std::abs(facts.depth - wish.depth),
            std::abs(facts.stencil - wish.stencil), std::abs(facts.samples - wish.samples)};
}

} // namespace

bool is_nearer(const EglConfigFacts& wish, const EglConfigFacts& a, const EglConfigFacts& b) {
    return distances(wish, a) < distances(wish, b);
}

std::vector<int> depths_to_try(int depth_bits) {
    std::vector<int> depths = {depth_bits};
    for (int fallback : {24, 16})
        if (fallback < depth_bits)
            depths.push_back(fallback);
    return depths;
}

namespace {

int attribute(EGLDisplay display, EGLConfig config, EGLint name) {
    EGLint value = 0;
    eglGetConfigAttrib(display, config, name, &value);
    return value;
}

EglConfigFacts facts_of(EGLDisplay display, EGLConfig config) {
    return {
        attribute(display, config, EGL_RED_SIZE),   attribute(display, config, EGL_GREEN_SIZE),
        attribute(display, config, EGL_BLUE_SIZE),  attribute(display, config, EGL_ALPHA_SIZE),
        attribute(display, config, EGL_DEPTH_SIZE), attribute(display, config, EGL_STENCIL_SIZE),
        attribute(display, config, EGL_SAMPLES)};
}

std::vector<EGLConfig> matching_configs(EGLDisplay display, const EGLint* attributes) {
    EGLint count = 0;
    if (!eglChooseConfig(display, attributes, nullptr, 0, &count) || count <= 0)
        return {};
    std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
    if (!eglChooseConfig(display, attributes, configs.data(), count, &count))
        return {};
    configs.resize(static_cast<std::size_t>(count));
    return configs;
}

} // namespace

std::vector<EGLConfig> choose_configs(EGLDisplay display, const ContextRequest& request) {
    const EglConfigFacts wish = wanted_facts(request);
    const EGLint attributes[] = {EGL_SURFACE_TYPE,
                                 request.view ? EGL_WINDOW_BIT : EGL_PBUFFER_BIT,
                                 EGL_RENDERABLE_TYPE,
                                 EGL_OPENGL_BIT,
                                 EGL_RED_SIZE,
                                 wish.red,
                                 EGL_GREEN_SIZE,
                                 wish.green,
                                 EGL_BLUE_SIZE,
                                 wish.blue,
                                 EGL_DEPTH_SIZE,
                                 wish.depth,
                                 EGL_STENCIL_SIZE,
                                 wish.stencil,
                                 EGL_SAMPLE_BUFFERS,
                                 wish.samples > 0 ? 1 : 0,
                                 EGL_SAMPLES,
                                 wish.samples,
                                 EGL_NONE};

    std::vector<std::pair<EglConfigFacts, EGLConfig>> ranked;
    for (EGLConfig config : matching_configs(display, attributes))
        ranked.emplace_back(facts_of(display, config), config);
    std::stable_sort(ranked.begin(), ranked.end(), [&](const auto& a, const auto& b) {
        return is_nearer(wish, a.first, b.first);
    });

    std::vector<EGLConfig> configs;
    std::transform(ranked.begin(), ranked.end(), std::back_inserter(configs),
                   [](const auto& entry) { return entry.second; });
    return configs;
}

} // namespace orvex
