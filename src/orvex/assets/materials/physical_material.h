#pragma once

/// @file
/// PhysicalMaterial: what a model's file tells of a surface beyond the colours of the fixed
/// pipeline.

#include <string>

#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"

namespace orvex {

/// A picture on a surface: which, and how it lies there.
///
/// A texture coordinate is scaled, then turned, then moved, before the picture is read.
struct PhysicalTexture {
    /// What lies beyond the picture's edges.
    enum class Wrap { repeat, mirror, clamp };

    /// The name as it stands in the material's queue of texture files, or the name of one of the
    /// material's textures; empty for none.
    std::string image;
    unsigned int layer = 0;     ///< which texture coordinates: 0 or 1
    float offset_u = 0.0f;      ///< in widths of the picture
    float offset_v = 0.0f;      ///< in heights of the picture
    float scale_u = 1.0f;       ///< above 1 the picture gets narrower
    float scale_v = 1.0f;       ///< above 1 the picture gets lower
    float rotation = 0.0f;      ///< radians, counter-clockwise
    float strength = 1.0f;      ///< of a normal's lean, or of occlusion; 1 as the picture says
    Wrap wrap_u = Wrap::repeat; ///< left and right
    Wrap wrap_v = Wrap::repeat; ///< above and below
};

/// The values of a metallic and rough surface, as file formats of today tell them. The engine reads
/// none of it: programs that draw such surfaces do. A value is multiplied by its picture's channel.
///
/// The defaults are those of a file that tells nothing.
struct PhysicalMaterial {
    /// What alpha does.
    enum class Alpha {
        opaque, ///< nothing
        mask,   ///< below `alpha_cutoff` there is no surface
        blend   ///< shows what lies behind
    };

    vec4 base_color = vec4(1.0f, 1.0f, 1.0f, 1.0f); ///< linear red, green, blue, and alpha; 0 to 1
    float metallic = 1.0f;                          ///< 0 is an insulator, 1 is a metal
    float roughness = 1.0f;                         ///< 0 is a mirror, 1 is chalk
    vec3 emissive = vec3(0.0f, 0.0f, 0.0f);         ///< linear, 0 to 1
    float emissive_strength = 1.0f;                 ///< multiplies `emissive`; from 0 on
    float ior = 1.5f;                               ///< index of refraction; 1 and more, 0 for none
    float specular = 1.0f;                          ///< of an insulator's highlight; 0 to 1
    vec3 specular_color = vec3(1.0f, 1.0f, 1.0f);   ///< linear, from 0 on
    float clearcoat = 0.0f;                         ///< a layer of varnish: 0 none, 1 whole
    float clearcoat_roughness = 0.0f;               ///< 0 to 1

    PhysicalTexture base_color_texture;          ///< sRGB, with alpha
    PhysicalTexture metallic_roughness_texture;  ///< roughness in green, metallic in blue
    PhysicalTexture normal_texture;              ///< tangent space, +y upward
    PhysicalTexture occlusion_texture;           ///< in red
    PhysicalTexture emissive_texture;            ///< sRGB
    PhysicalTexture specular_texture;            ///< in alpha
    PhysicalTexture specular_color_texture;      ///< sRGB
    PhysicalTexture clearcoat_texture;           ///< in red
    PhysicalTexture clearcoat_roughness_texture; ///< in green
    PhysicalTexture clearcoat_normal_texture;    ///< tangent space, +y upward

    Alpha alpha = Alpha::opaque;  ///< what the alpha of the base color does
    float alpha_cutoff = 0.5f;    ///< for `Alpha::mask`
    bool is_double_sided = false; ///< whether the back of a face is seen
    bool is_unlit = false;        ///< `base_color` is what is seen, whatever the light
};

} // namespace orvex
