#pragma once

/// @file
/// Which configurations of a display can serve a request.

#include <vector>

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"

namespace orvex {

struct ContextRequest;

/// The properties by which configurations are told apart.
struct EglConfigFacts {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;
    int depth = 0;
    int stencil = 0;
    int samples = 0;
};

/// What a request asks of a configuration, with its depth bits as they stand. Colour bits of 16
/// mean 5/6/5, of 24 8/8/8, and anything else 8/8/8/8.
EglConfigFacts wanted_facts(const ContextRequest& request);

/// Whether one configuration comes nearer to the wish than another: by colour first, then alpha,
/// depth, stencil and samples.
bool is_nearer(const EglConfigFacts& wish, const EglConfigFacts& a, const EglConfigFacts& b);

/// The depth bits to try, one after the other: the wish, then 24, then 16.
std::vector<int> depths_to_try(int depth_bits);

/// The configurations with at least the bits of the request, alpha apart, nearest first.
std::vector<EGLConfig> choose_configs(EGLDisplay display, const ContextRequest& request);

} // namespace orvex
