#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/3mf/private/3mf_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return read_rubbish(orvex::formats::read_3mf, data, size);
}
