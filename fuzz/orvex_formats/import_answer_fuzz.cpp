// What a program might answer that somebody took over. The first byte tells what it was asked.

#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/gltf/private/draco_meshes.h"
#include "orvex_formats/import/private/answer_reader.h"

namespace {

orvex::formats::Draft read_meshes(const orvex::formats::InputFile& answer) {
    using namespace orvex::formats;
    for (const DracoMesh& mesh : read_draco_answer(answer, 2)) {
        for (const std::uint32_t corner : mesh.corners)
            if (corner >= mesh.num_vertices)
                std::abort();
        for (const auto& [id, attribute] : mesh.attributes)
            if (attribute.numbers.size() != mesh.num_vertices * attribute.width)
                std::abort();
    }
    return {};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const bool is_model = data[0] != 'd';
    return read_rubbish(is_model ? orvex::formats::read_answer : read_meshes, data + 1, size - 1);
}
