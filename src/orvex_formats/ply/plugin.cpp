#include <new>

#include "orvex_formats/ply/private/ply_reader.h"
#include "orvex_formats/private/format_loader.h"

ORVEX_FORMAT_PLUGIN("orvex_ply", "PLY", "Polygons and points of PLY files, binary and text",
                    orvex::formats::read_ply)
