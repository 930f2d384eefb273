// The engine lets large arrays that nobody writes share a few pages, until somebody does: so the
// system knows which arrays are as they were made, and none of them has to be read, which would
// bring their pages into this process.

#define GL_GLEXT_PROTOTYPES
#include "orvex_kit/private/default_arrays.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <GL/gl.h>
#include <fcntl.h>
#include <orvex/renderer/renderer.h>
#include <unistd.h>

namespace orvex::kit {

using orvex::MeshData;
using orvex::Renderer;
using orvex::vec4;
using orvex::VertexAttribArray;

namespace {

/// The system's table of this process's pages.
class PageTable {
public:
    PageTable()
        : file(::open("/proc/self/pagemap", O_RDONLY | O_CLOEXEC)) {}
    ~PageTable() {
        if (file >= 0)
            ::close(file);
    }
    PageTable(const PageTable&) = delete;
    PageTable& operator=(const PageTable&) = delete;

    /// Whether none of these pages is this process's own; false where the system doesn't tell.
    bool are_shared(std::uintptr_t first, std::uintptr_t end) const {
        std::array<std::uint64_t, 512> entries;
        for (std::uintptr_t page = first; page < end;) {
            const std::size_t count = std::min<std::size_t>(end - page, entries.size());
            const std::size_t size = count * sizeof entries[0];
            if (file < 0 ||
                ::pread(file, entries.data(), size, static_cast<off_t>(page * sizeof entries[0])) !=
                    static_cast<ssize_t>(size))
                return false;
            if (!std::all_of(entries.begin(), entries.begin() + count, is_shared))
                return false;
            page += count;
        }
        return true;
    }

private:
    static bool is_shared(std::uint64_t entry) {
        constexpr std::uint64_t is_there = std::uint64_t{1} << 63, is_swapped = is_there >> 1,
                                is_of_file = is_there >> 2;
        return (entry & (is_there | is_swapped)) == 0 || (entry & is_of_file) != 0;
    }

    int file;
};

bool is_same(const vec4& a, const vec4& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

std::optional<vec4> constant_of(const VertexAttribArray& array) {
    constexpr std::size_t smallest = std::size_t{512} << 10;
    const std::size_t size = array.num_elements * sizeof(vec4);
    if (!array.data || array.raw_ptr || size < smallest)
        return std::nullopt;
    const auto page_size = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(array.data);
    const std::uintptr_t first = (begin + page_size - 1) / page_size,
                         end = (begin + size) / page_size;
    // What lies beside the whole pages is looked at, and one vertex for all of those within.
    const vec4* const last = array.data + array.num_elements;
    const auto beside = static_cast<std::ptrdiff_t>(page_size / sizeof(vec4));
    const vec4 value = array.data[array.num_elements / 2];
    const auto has_value = [&value](const vec4& other) { return is_same(other, value); };
    const bool is_constant = std::all_of(array.data, array.data + beside, has_value) &&
                             std::all_of(last - beside, last, has_value) &&
                             PageTable().are_shared(first, end);
    return is_constant ? std::optional(value) : std::nullopt;
}

bool is_default(const VertexAttribArray& array) {
    const std::optional<vec4> value = constant_of(array);
    return value && is_same(*value, vec4());
}

namespace {

enum Place : std::size_t { uv0_place, uv1_place, tangent_place, color_place };

} // namespace

std::array<VertexAttribArray*, DefaultArrays::count> DefaultArrays::arrays_of(MeshData& mesh) {
    return {&mesh.uv0, &mesh.uv1, &mesh.tangent, &mesh.color};
}

bool DefaultArrays::are_there() const {
    return std::find(found.begin(), found.end(), true) != found.end();
}

void DefaultArrays::look_at(MeshData& mesh) {
    if (has_looked && !mesh.uv0_need_update && !mesh.uv1_need_update &&
        !mesh.tangents_need_update && !mesh.colors_need_update)
        return;
    const auto arrays = arrays_of(mesh);
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<vec4> value = constant_of(*arrays[i]);
        const bool is_color = arrays[i] == &mesh.color;
        const bool is_default = value && (is_color || is_same(*value, vec4()));
        // What has gone to the GPU once goes on doing so: its size tells the back end of a change.
        found[i] = is_default && (!has_looked || found[i]);
        if (is_color && value)
            color = *value;
    }
    has_looked = true;
}

void disable_client_arrays(Renderer& renderer) {
    // What the renderer holds enabled for the next draw goes through its own books.
    const bool was_keeping = renderer.keep_binds(false);
    GLint unit = 0;
    glGetIntegerv(GL_CLIENT_ACTIVE_TEXTURE, &unit);
    constexpr GLenum units[] = {GL_TEXTURE0, GL_TEXTURE1};
    for (const GLenum each : units) {
        glClientActiveTexture(each);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    glClientActiveTexture(static_cast<GLenum>(unit));
    glDisableClientState(GL_COLOR_ARRAY);
    renderer.keep_binds(was_keeping);
}

WithoutDefaults::WithoutDefaults(MeshData& mesh, const DefaultArrays& known, Path path)
    : arrays(DefaultArrays::arrays_of(mesh)) {
    for (std::size_t i = 0; i < arrays.size(); ++i)
        if (known.found[i] && (path == Path::gl3 || i != tangent_place))
            std::swap(arrays[i]->data, data[i]);
    if (path == Path::gl2)
        set_fixed_values(known.color);
    else if (data[color_place])
        set_color(known.color, mesh.color_attrib_location);
}

void WithoutDefaults::set_color(const vec4& color, int location) {
    if (location < 0 || is_same(color, vec4()))
        return;
    color_location = location;
    const auto number = static_cast<GLuint>(location);
    glGetVertexAttribfv(number, GL_CURRENT_VERTEX_ATTRIB, color_before.data());
    glVertexAttrib4f(number, color.x, color.y, color.z, color.w);
}

/// A draw with an array leaves nothing that could be relied on, so that each is set anew.
void WithoutDefaults::set_fixed_values(const vec4& color) {
    if (data[uv0_place])
        glMultiTexCoord4f(GL_TEXTURE0, 0.0f, 0.0f, 0.0f, 1.0f);
    if (data[uv1_place])
        glMultiTexCoord4f(GL_TEXTURE1, 0.0f, 0.0f, 0.0f, 1.0f);
    has_fixed_color = data[color_place] != nullptr;
    if (!has_fixed_color)
        return;
    glGetFloatv(GL_CURRENT_COLOR, color_before.data());
    glColor4f(color.x, color.y, color.z, color.w);
}

WithoutDefaults::~WithoutDefaults() {
    for (std::size_t i = 0; i < arrays.size(); ++i)
        if (data[i])
            arrays[i]->data = data[i];
    if (color_location >= 0)
        glVertexAttrib4fv(static_cast<GLuint>(color_location), color_before.data());
    if (has_fixed_color)
        glColor4fv(color_before.data());
}

} // namespace orvex::kit
