#include <new>

#include "orvex_formats/import/private/import_reader.h"
#include "orvex_formats/private/format_loader.h"

ORVEX_FORMAT_PLUGIN("orvex_import", orvex::formats::imported_formats(),
                    "Models of many other formats, by a program of their own",
                    orvex::formats::read_imported)
