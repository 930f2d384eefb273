#include <new>

#include "orvex_formats/gltf/private/gltf_reader.h"
#include "orvex_formats/private/format_loader.h"

ORVEX_FORMAT_PLUGIN("orvex_gltf", "glTF", "Scenes of glTF 2.0, text and binary",
                    orvex::formats::read_gltf_at)
