#include <new>

#include "orvex_formats/obj/private/obj_reader.h"
#include "orvex_formats/private/format_loader.h"

ORVEX_FORMAT_PLUGIN("orvex_obj", "OBJ",
                    "Faces, points and lines of OBJ files as programs write them",
                    orvex::formats::read_obj)
