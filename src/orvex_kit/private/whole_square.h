#pragma once

#include <orvex/geometry/shapes/mesh_plane.h>

#include "orvex_kit/private/engine_parts.h"
#include "orvex_kit/private/view_context.h"
#include "orvex_kit/ref.h"

namespace orvex::kit {

/// A square whose x and z go from -1 to 1: what covers a whole framebuffer. Its buffers end with
/// the context, which may be a host's and live on.
class WholeSquare final : public EnginePart {
public:
    /// @param context  lives longer
    explicit WholeSquare(ViewContext& context);
    ~WholeSquare() override;
    void close() override;

    /// Draws it by the program that is bound, with its context current.
    void render();

private:
    ViewContext& context;
    Ref<orvex::MeshPlane> mesh;
};

} // namespace orvex::kit
