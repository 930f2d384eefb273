#include <new>

#include "orvex_formats/off/private/off_reader.h"
#include "orvex_formats/private/format_loader.h"

ORVEX_FORMAT_PLUGIN("orvex_off", "OFF", "Polygons of OFF files", orvex::formats::read_off)
