#include "orvex/renderer/opengl/state/private/gl_quirks.h"

#include <cstdlib>
#include <string_view>

namespace orvex {

namespace {

std::string_view trimmed(std::string_view name) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = name.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return name.substr(first, name.find_last_not_of(blanks) - first + 1);
}

void switch_off(GlQuirks& quirks, std::string_view wanted) {
#define ORVEX_GL_QUIRK_OFF(name, driver, symptom, remedy)                                          \
    if (wanted == #name)                                                                           \
        quirks.name = false;
    ORVEX_GL_QUIRKS(ORVEX_GL_QUIRK_OFF)
#undef ORVEX_GL_QUIRK_OFF
}

} // namespace

GlQuirks GlQuirks::without(const char* names) {
    GlQuirks quirks;
    std::string_view rest = names ? names : "";
    while (!rest.empty()) {
        const std::size_t end = rest.find(',');
        switch_off(quirks, trimmed(rest.substr(0, end)));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return quirks;
}

GlQuirks GlQuirks::from_environment() {
    return without(std::getenv("ORVEX_GL_QUIRKS_OFF"));
}

} // namespace orvex
