// Reads bytes as a material library.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/support/target.h"
#include "orvex/assets/models/obj/private/obj_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    orvex::OBJ_Model model;
    orvex::read_material_text(model, text.c_str(), text.size());
    for (const auto& material : model.materials) {
        for (const auto& filename : material->texture_filenames)
            if (std::string(filename.data()).size() > 255)
                std::abort();
    }
    return 0;
}
