#pragma once

/// @file
/// Pictures as data: depth, normals, positions and ids beside the colours.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "orvex_kit/api.h"
#include "orvex_kit/camera.h"
#include "orvex_kit/framing.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/picture.h"

namespace orvex::kit {

class Model;
class View;

/// What is told of the nearest surface in each pixel, opaque or not.
enum class Layer {
    color,    ///< four `std::uint8_t`: the view's picture, with straight alpha
    depth,    ///< a `float`: before the eye, along the viewing axis, in the model's units; infinity
              ///< where nothing is
    normal,   ///< three `float`: of length 1, on the side that is seen; 0 where nothing is
    position, ///< three `float`; NaN where nothing is
    object,   ///< a `std::int32_t`: the mesh, as `Model::meshes` counts; -1 where nothing is
    material, ///< likewise, as `Model::materials` counts; -1 also for a face without one
    face      ///< likewise, in its mesh; -1 where nothing is
};

/// What a layer is called: "color", "depth", "normal", "position", "object", "material", "face";
/// empty for a value outside the list.
ORVEX_KIT_API const char* name_of(Layer layer) noexcept;
/// The layer of a name. @return nothing for any other
ORVEX_KIT_API std::optional<Layer> layer_named(const std::string& name);
/// Channels of a pixel: 4, 3 or 1; 0 for a value outside the list.
ORVEX_KIT_API int channels_of(Layer layer) noexcept;
/// What each of them is.
ORVEX_KIT_API Sample sample_of(Layer layer) noexcept;

/// Where normals and positions are told.
enum class LayerSpace {
    world,
    camera, ///< that of `Camera::pose`: x to the right of the picture, y down, z into the scene
};

/// How layers are drawn.
struct LayerOptions {
    LayerSpace space = LayerSpace::world; ///< of normals and positions
    Angle lit_from{};                     ///< for the colours: see `View::add`
};

/// Memory of the caller's for one layer, in the size of the view.
struct LayerPlane {
    Layer layer = Layer::color;   ///< which
    void* rows = nullptr;         ///< the pixels of the row on top
    std::ptrdiff_t row_bytes = 0; ///< from one row to the next below it; a multiple of a sample's
                                  ///< size, and negative where they lie the other way round
};

/// Draws layers of models straight into the caller's memory.
///
/// The colours are drawn as a frame of the view, with its look, background and samples, and stay on
/// its surface. All other layers come from one more pass, of one sample in the middle of each
/// pixel: what is blended counts as if it were opaque. Normals are those that shading uses.
/// @param models   ids count on from one to the next; null is passed over
/// @param planes   in any order, each layer as often as wanted; what lies between rows stays
/// @return why not: an empty view, a plane without memory or with rows too short, a driver that
///         hasn't got what it takes (floats in textures, and on path gl2 the shading language
///         1.50; softpipe can't number faces), or memory. Planes may hold anything then
ORVEX_KIT_API Outcome draw_layers(View& view, const Camera& camera,
                                  const std::vector<Model*>& models,
                                  const std::vector<LayerPlane>& planes,
                                  const LayerOptions& options = {});
/// The same into pictures.
/// @param pictures  receives one for each layer, in their order; stays as it was on failure
ORVEX_KIT_API Outcome draw_layers(View& view, const Camera& camera,
                                  const std::vector<Model*>& models,
                                  const std::vector<Layer>& layers, std::vector<Picture>& pictures,
                                  const LayerOptions& options = {});

} // namespace orvex::kit
