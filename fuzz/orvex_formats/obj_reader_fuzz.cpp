#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/obj/private/mtl_reader.h"
#include "orvex_formats/obj/private/obj_reader.h"

/// Reads bytes as a model, in pieces of a few bytes by two threads, and as a library.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvex::formats;
    const auto read = [](const InputFile& file) {
        return read_obj(file, {1 + static_cast<std::size_t>(file.size() % 64), 2});
    };
    MtlTable table;
    Notes notes;
    read_mtl({reinterpret_cast<const char*>(data), size}, "a.mtl", table, notes);
    return read_rubbish(read, data, size);
}
