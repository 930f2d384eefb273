#pragma once

/// @file
/// What the fuzz targets of all formats do.

#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include "fuzz/support/target.h"
#include "orvex_formats/private/input_file.h"
#include "orvex_formats/private/normals.h"
#include "orvex_formats/private/refusal.h"
#include "tests/orvex_formats/check_draft.h"

/// Reads bytes as a file: a draft that holds together, with normals too, or a refusal.
inline int read_rubbish(orvex::formats::Draft (*reader)(const orvex::formats::InputFile&),
                        const std::uint8_t* data, std::size_t size) {
    using namespace orvex::formats;
    try {
        Draft draft = reader(InputFile(std::vector<unsigned char>(data, data + size)));
        for (Surface& surface : draft.surfaces)
            add_normals(surface);
        if (!orvex_test::holds_together(draft))
            std::abort();
    } catch (const Refusal& refusal) {
        if (refusal.what()[0] == '\0')
            std::abort();
    }
    return 0;
}
