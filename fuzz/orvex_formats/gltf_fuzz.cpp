#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/gltf/private/gltf_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvex::formats;
    read_rubbish([](const InputFile& file) { return read_gltf_at(file, 0.5f); }, data, size);
    return read_rubbish(read_gltf, data, size);
}
