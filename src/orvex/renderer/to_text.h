#pragma once

/// @file
/// The enumerations of the renderer and its records as texts, for logs, tests and tools.
///
/// @code
/// orvex::LogMgr::get()->tracef("made as %s", orvex::to_text(orvex::PF_RGBA_U8)); // PF_RGBA_U8
/// @endcode

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/keyboard.h"
#include "orvex/renderer/records/geometry_enums.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "orvex/renderer/records/mesh_types.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// @name Names of enumerators
/// Each returns the name of an enumerator as sources write it, "?" for a value outside the list and
/// for a mix of bits. Never null; the text lives as long as the process. Any thread.
/// @{

/// Names a factor of the blend equation.
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_BLEND_FACTOR value) noexcept;
/// Names a comparison.
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_CMP_FUNC value) noexcept;
/// Names a side of polygons.
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_POLYGON_FACE value) noexcept;
/// Names a way to draw polygons.
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_POLYGON_MODE value) noexcept;
/// Names a layout of pixels.
[[nodiscard]] ORVEX_API const char* to_text(PIXEL_FORMAT value) noexcept;
/// Names the use of a buffer.
[[nodiscard]] ORVEX_API const char* to_text(BUFFER_OBJECT_USAGE value) noexcept;
/// Names an addressing.
[[nodiscard]] ORVEX_API const char* to_text(SAMPLER_ADDRESSING_MODE value) noexcept;
/// Names a filtering.
[[nodiscard]] ORVEX_API const char* to_text(SAMPLER_FILTERING_MODE value) noexcept;
/// Names a stage.
[[nodiscard]] ORVEX_API const char* to_text(GPU_SHADER_TYPE value) noexcept;
/// Names an access to images.
[[nodiscard]] ORVEX_API const char* to_text(DATA_ACCESS_TYPE value) noexcept;
/// Names a face of cubes.
[[nodiscard]] ORVEX_API const char* to_text(CUBEMAP_FACE value) noexcept;
/// Names one bit of barriers.
[[nodiscard]] ORVEX_API const char* to_text(MEMORY_BARRIER_BITS value) noexcept;
/// Names a format of vertices.
[[nodiscard]] ORVEX_API const char* to_text(VERTEX_FORMAT value) noexcept;
/// Names a way to join vertices.
[[nodiscard]] ORVEX_API const char* to_text(LINE_RENDER_MODE value) noexcept;
/// Names a kind of emitter.
[[nodiscard]] ORVEX_API const char* to_text(PARTICLE_EMITTER_TYPE value) noexcept;
/// Names a kind of action.
[[nodiscard]] ORVEX_API const char* to_text(PARTICLE_ACTION_TYPE value) noexcept;
/// Names a kind of uniform.
[[nodiscard]] ORVEX_API const char* to_text(GPU_SHADER_UNIFORM value) noexcept;
/// Names one bit of borders.
[[nodiscard]] ORVEX_API const char* to_text(MESH_PLANE_BORDER_TYPE value) noexcept;
/// Names a kind of texture.
[[nodiscard]] ORVEX_API const char* to_text(TEXTURE_TYPE value) noexcept;
/// Names a layout of keys.
[[nodiscard]] ORVEX_API const char* to_text(KEYBOARD_LAYOUT value) noexcept;
/// @}

} // namespace orvex
