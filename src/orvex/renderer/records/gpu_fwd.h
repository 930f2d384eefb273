#pragma once

/// @file
/// Forward declarations of the GPU program classes and records.

namespace orvex {

class GpuProgram;
class GpuProgramMgr;

struct GpuProgramData;
struct GpuProgramUniform;
struct UniformBufferData;

enum GPU_SHADER_UNIFORM : int;

} // namespace orvex
