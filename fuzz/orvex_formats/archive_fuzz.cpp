#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/private/archive.h"

namespace {

orvex::formats::Draft inflate_all(const orvex::formats::InputFile& file) {
    using namespace orvex::formats;
    std::uint64_t num_behind = 0;
    if (is_gzip(file))
        gunzip(file, num_behind);
    const ZipArchive archive(file);
    for (const ZipArchive::Entry& entry : archive.entries())
        archive.read(entry);
    return {};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return read_rubbish(inflate_all, data, size);
}
