#pragma once

/// @file
/// Forward declarations of images, textures and materials.

namespace orvex {

class Image;
class ImageCodec;
class Material;
class MaterialMgr;
class Texture;
class TextureMgr;

struct TextureCubeMapFace;
struct TextureData;

} // namespace orvex
