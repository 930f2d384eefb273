#include <new>

#include "orvex_formats/3mf/private/3mf_reader.h"
#include "orvex_formats/private/format_loader.h"

ORVEX_FORMAT_PLUGIN("orvex_3mf", "3MF", "Meshes of 3MF files, where their items put them",
                    orvex::formats::read_3mf)
