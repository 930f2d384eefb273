#pragma once

/// @file
/// Forward declarations of what the renderer contract speaks about.

#include "orvex/renderer/renderer_types.h"

namespace orvex {

class Renderer;
class RenderTarget;
class RenderWindow;

struct FontData;
struct GpuProgramData;
struct MeshData;
struct PolylineData;
struct TextureData;
struct UniformBufferData;
struct VertexPoolData;

} // namespace orvex
