// Reads bytes as the description of a glyph sheet, and sets every character code by it.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/support/target.h"
#include "orvex/overlays/private/bm_charset_reader.h"
#include "orvex/overlays/private/bm_quads.h"

namespace {

void check(bool state) {
    if (!state)
        std::abort();
}

std::string every_character_code() {
    std::string text;
    for (int c = 1; c < 256; ++c)
        text += static_cast<char>(c);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto charset = orvex::read_bm_charset(text.c_str());
    if (charset == nullptr)
        return 0;
    check(std::memchr(charset->image_filename, '\0', sizeof(charset->image_filename)) != nullptr);
    check(charset->pages == 0);

    static const std::string codes = every_character_code();
    static std::vector<orvex::Vertex> vertices(codes.size() * orvex::vertices_per_glyph);
    orvex::bm_string string;
    string.text = codes;
    const orvex::Vertex* const end = orvex::write_bm_quads(vertices.data(), string, *charset, 1.0f);
    check(end == vertices.data() + vertices.size());
    for (const orvex::Vertex& vertex : vertices)
        check(std::isfinite(vertex.position.x) && std::isfinite(vertex.position.y));
    return 0;
}
