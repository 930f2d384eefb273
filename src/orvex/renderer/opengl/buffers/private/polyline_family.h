#pragma once

/// @file
/// The family of polylines.

#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Turns `PolylineData` into buffers and draws it. What each operation does is told in `Renderer`.
///
/// The vertices are always interleaved records of 96 bytes, which travel whole whenever any part of
/// them changed. The caller chooses between the two paths.
class PolylineFamily {
public:
    explicit PolylineFamily(GlState& state)
        : state(state) {}

    /// The path of generic attributes.
    bool prepare_gl3(PolylineData* polyline);
    /// The path of client arrays.
    bool prepare_gl2(PolylineData* polyline);
    bool draw(PolylineData* polyline, int start, int count);
    bool finish(PolylineData* polyline);
    bool kill(PolylineData* polyline);

private:
    GlState& state;
};

} // namespace orvex
