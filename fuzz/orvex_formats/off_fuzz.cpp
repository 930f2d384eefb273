#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/off/private/off_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return read_rubbish(orvex::formats::read_off, data, size);
}
