#pragma once

/// @file
/// Forward declarations of the value types, for headers that only name them.

namespace orvex {

class vec2;
class vec3;
class vec3u8;
class vec4;
class vec4u8;
class vec4i;
class vec4d;
class mat4;
class mat4d;
class quat;
class Math;

} // namespace orvex
