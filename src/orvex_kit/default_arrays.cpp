// The engine lets large arrays that nobody writes share a few pages, until somebody does: so the
// system knows which arrays are as they were made, and none of them has to be read, which would
// bring their pages into this process.

#include "orvex_kit/private/default_arrays.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace orvex::kit {

using orvex::MeshData;
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

bool is_default(const vec4& value) {
    const vec4 fresh;
    return std::memcmp(&value, &fresh, sizeof fresh) == 0;
}

/// Only large arrays that have never been written since they were made.
bool holds_defaults(const VertexAttribArray& array) {
    constexpr std::size_t smallest = std::size_t{512} << 10;
    const std::size_t size = array.num_elements * sizeof(vec4);
    if (!array.data || array.raw_ptr || size < smallest)
        return false;
    const auto page_size = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(array.data);
    const std::uintptr_t first = (begin + page_size - 1) / page_size,
                         end = (begin + size) / page_size;
    // What lies beside the whole pages is looked at, and one vertex for all of those within.
    const vec4* const last = array.data + array.num_elements;
    const auto beside = static_cast<std::ptrdiff_t>(page_size / sizeof(vec4));
    return std::all_of(array.data, array.data + beside, is_default) &&
           is_default(array.data[array.num_elements / 2]) &&
           std::all_of(last - beside, last, is_default) && PageTable().are_shared(first, end);
}

} // namespace

std::array<VertexAttribArray*, DefaultArrays::count> DefaultArrays::arrays_of(MeshData& mesh) {
    return {&mesh.uv0, &mesh.uv1, &mesh.tangent};
}

void DefaultArrays::look_at(MeshData& mesh) {
    if (found && !mesh.uv0_need_update && !mesh.uv1_need_update && !mesh.tangents_need_update)
        return;
    found.emplace();
    const auto arrays = arrays_of(mesh);
    for (std::size_t i = 0; i < count; ++i)
        (*found)[i] = holds_defaults(*arrays[i]);
}

WithoutDefaults::WithoutDefaults(MeshData& mesh, const DefaultArrays& known)
    : arrays(DefaultArrays::arrays_of(mesh)) {
    for (std::size_t i = 0; i < arrays.size(); ++i)
        if (known.found && (*known.found)[i])
            std::swap(arrays[i]->data, data[i]);
}

WithoutDefaults::~WithoutDefaults() {
    for (std::size_t i = 0; i < arrays.size(); ++i)
        if (data[i])
            arrays[i]->data = data[i];
}

} // namespace orvex::kit
