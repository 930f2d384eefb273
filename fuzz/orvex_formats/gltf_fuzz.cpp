#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/gltf/private/gltf_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return read_rubbish(orvex::formats::read_gltf, data, size);
}
