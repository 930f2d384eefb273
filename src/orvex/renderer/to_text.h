#pragma once

/// @file
/// The enumerations of the renderer and its records as texts, for logs, tests and tools.
///
/// @code
/// std::printf("the target's format is %s\n", orvex::to_text(PF_RGBA_U8)); // PF_RGBA_U8
/// @endcode

#include "orvex/api.h"
#include "orvex/renderer/keyboard.h"
#include "orvex/renderer/records/geometry_fwd.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "orvex/renderer/records/mesh_types.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// @name Names of enumerators
/// Each returns the name of an enumerator as sources write it, "?" for a value outside the list and
/// for a mix of bits. Never null; the text lives as long as the process. Any thread.
/// @{

[[nodiscard]] ORVEX_API const char* to_text(RENDERER_BLEND_FACTOR value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_CMP_FUNC value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_POLYGON_FACE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(RENDERER_POLYGON_MODE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(PIXEL_FORMAT value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(BUFFER_OBJECT_USAGE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(SAMPLER_ADDRESSING_MODE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(SAMPLER_FILTERING_MODE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(GPU_SHADER_TYPE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(DATA_ACCESS_TYPE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(CUBEMAP_FACE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(MEMORY_BARRIER_BITS value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(VERTEX_FORMAT value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(LINE_RENDER_MODE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(PARTICLE_EMITTER_TYPE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(PARTICLE_ACTION_TYPE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(GPU_SHADER_UNIFORM value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(MESH_PLANE_BORDER_TYPE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(TEXTURE_TYPE value) noexcept;
[[nodiscard]] ORVEX_API const char* to_text(KEYBOARD_LAYOUT value) noexcept;
/// @}

} // namespace orvex
