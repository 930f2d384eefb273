#include <new>

#include "orvex_formats/private/format_loader.h"
#include "orvex_formats/stl/private/stl_reader.h"

ORVEX_FORMAT_PLUGIN("orvex_stl", "STL", "Triangles of STL files, binary and text",
                    orvex::formats::read_stl)
