// The only file that knows the library, which is safe with whatever bytes but believes its other
// arguments.

#include "orvex_formats/gltf/private/meshopt_codec.h"

#include <cstddef>

#ifdef ORVEX_WITH_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

namespace orvex::formats {

const char* mistake_in(const MeshoptStream& stream) {
    const bool are_attributes = stream.mode == "ATTRIBUTES";
    const bool are_triangles = stream.mode == "TRIANGLES";
    if (!are_attributes && !are_triangles && stream.mode != "INDICES")
        return "its mode is none";
    if (are_attributes ? stream.stride == 0 || stream.stride % 4 != 0 || stream.stride > 256
                       : stream.stride != 2 && stream.stride != 4)
        return "its stride doesn't fit its mode";
    if (are_triangles && stream.count % 3 != 0)
        return "its count of corners can't be divided by 3";
    if (stream.filter == "NONE")
        return nullptr;
    if (!are_attributes)
        return "only attributes have a filter";
    if (stream.filter == "OCTAHEDRAL")
        return stream.stride == 4 || stream.stride == 8 ? nullptr
                                                        : "its stride doesn't fit its filter";
    if (stream.filter == "QUATERNION")
        return stream.stride == 8 ? nullptr : "its stride doesn't fit its filter";
    return stream.filter == "EXPONENTIAL" ? nullptr : "its filter is none";
}

#ifdef ORVEX_WITH_MESHOPTIMIZER

bool can_unpack_meshopt() {
    return true;
}

bool unpack_meshopt(const MeshoptStream& stream, unsigned char* to) {
    const auto count = static_cast<std::size_t>(stream.count);
    const auto stride = static_cast<std::size_t>(stream.stride);
    const unsigned char* const bytes = stream.bytes.data();
    const std::size_t size = stream.bytes.size();
    if (stream.mode == "TRIANGLES")
        return meshopt_decodeIndexBuffer(to, count, stride, bytes, size) == 0;
    if (stream.mode == "INDICES")
        return meshopt_decodeIndexSequence(to, count, stride, bytes, size) == 0;
    if (meshopt_decodeVertexBuffer(to, count, stride, bytes, size) != 0)
        return false;
    if (stream.filter == "OCTAHEDRAL")
        meshopt_decodeFilterOct(to, count, stride);
    else if (stream.filter == "QUATERNION")
        meshopt_decodeFilterQuat(to, count, stride);
    else if (stream.filter == "EXPONENTIAL")
        meshopt_decodeFilterExp(to, count, stride);
    return true;
}

#else

bool can_unpack_meshopt() {
    return false;
}

bool unpack_meshopt(const MeshoptStream&, unsigned char*) {
    return false;
}

#endif

} // namespace orvex::formats
