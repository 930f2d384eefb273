#pragma once

/// @file
/// A renderer that keeps the lines it is given to draw.

#include <vector>

#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/vertex.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

/// One polyline as it was drawn.
struct DrawnLine {
    const orvex::PolylineData* store;
    std::vector<orvex::Vertex> vertices; ///< all it has
    int start;                           ///< first vertex asked for
    int count;                           ///< number asked for, below 1 for all

    const orvex::vec4& at(unsigned long i) const { return vertices.at(i).position; }
    const orvex::vec4& color_at(unsigned long i) const { return vertices.at(i).color; }
};

class LineRenderer : public FakeRenderer {
public:
    std::vector<DrawnLine> lines;

    bool polyline_vb_draw(orvex::PolylineData* polyline, int start, int count) override {
        lines.push_back({polyline,
                         {polyline->vertices, polyline->vertices + polyline->num_vertices},
                         start,
                         count});
        return FakeRenderer::polyline_vb_draw(polyline, start, count);
    }

    /// The lines since the last call.
    std::vector<DrawnLine> take_lines() {
        std::vector<DrawnLine> taken;
        taken.swap(lines);
        return taken;
    }
};

} // namespace orvex_test
