// Plays bytes as calls of the public operations, as api_fuzz.cpp does, on the system's driver, off
// screen.

#include <cstdint>

#include "fuzz/api/operations.h"
#include "fuzz/support/target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvex_fuzz::Bytes in(data, size);
    orvex_fuzz::Stage stage;
    stage.core = in.byte() >= 128;
    stage.gl_major = stage.core ? 3 : 2;
    stage.gl_minor = stage.core ? 2 : 1;
    orvex_fuzz::play(in, stage);
    return 0;
}
