#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "orvex/overlays/hud.h"
#include "orvex/overlays/skybox.h"
#include "orvex/overlays/tripod_visualizer.h"

namespace orvex_test {
namespace {

using namespace orvex;

/// FNV-1a, 64 bits.
std::uint64_t hash_of(const std::string& text) {
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    return hash;
}

/// A shader text as hosts know it: drivers, caches and hosts that compare texts see every blank.
struct Row {
    const char* name;
    const char* const& text;
    std::size_t length;
    std::uint64_t hash;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

class ShaderText : public testing::TestWithParam<Row> {};

TEST_P(ShaderText, has_the_same_bytes_as_ever) {
    const Row& row = GetParam();
    const std::string text = row.text;
    EXPECT_EQ(text.size(), row.length);
    EXPECT_EQ(hash_of(text), row.hash) << text;
}

#define TEXT(name, length, hash)                                                                   \
    Row {                                                                                          \
#name, name, length, hash                                                                  \
    }

INSTANTIATE_TEST_SUITE_P(
    overlays, ShaderText,
    testing::Values(TEXT(aux::orvex_hud_tex_ortho_proj_vs_gl2, 174, 0xa6b4fa9124cff646u),
                    TEXT(aux::orvex_hud_tex_ortho_proj_ps_gl2, 140, 0x8a74da908fdac620u),
                    TEXT(aux::orvex_hud_tex_ortho_proj_vs_gl3, 240, 0xc51864e66e0e3c61u),
                    TEXT(aux::orvex_hud_tex_ortho_proj_ps_gl3, 169, 0x7e94df005df64de9u),
                    TEXT(orvex_skybox_vs_gl2, 305, 0x800fef98c3107af6u),
                    TEXT(orvex_skybox_ps_gl2, 161, 0x2c6dc2b623117d43u),
                    TEXT(orvex_skybox_vs_gl3, 354, 0xebacf2e4715320c0u),
                    TEXT(orvex_skybox_ps_gl3, 188, 0x684f0dc1ce425ca3u),
                    TEXT(aux::orvex_tripod_viz_vs_gl2, 163, 0x4d19f9770d14ceeeu),
                    TEXT(aux::orvex_tripod_viz_ps_gl2, 56, 0x578d2ef1b32fa8bdu),
                    TEXT(aux::orvex_tripod_viz_vs_gl3, 238, 0xeedae09d8a707b7bu),
                    TEXT(aux::orvex_tripod_viz_ps_gl3, 99, 0xdcd4d25bd82ab705u)));

#undef TEXT

} // namespace
} // namespace orvex_test
