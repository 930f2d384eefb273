// What stands in a mesh: its lists, and that its faces name vertices which are there.

#include "orvex/assets/models/3ds/private/lib3ds_mesh_check.h"

#include <algorithm>
#include <utility>

namespace orvex::lib3ds {

void MeshCheck::begin(std::uint32_t offset) {
    mesh = {};
    mesh.offset = offset;
}

bool MeshCheck::end(MeshSummary& summary) {
    // A mesh without vertices is left out of the model, whatever its faces name.
    if (mesh.num_vertices > 0 && mesh.end_of_indices > mesh.num_vertices)
        return reader.refuse(mesh.faces_at, "a face names a vertex that isn't there");
    summary.elements = mesh.num_vertices + mesh.num_faces;
    summary.normal_steps = mesh.normal_steps;
    return true;
}

bool MeshCheck::take_array(std::uint16_t id, Span content, Span& face_lists) {
    face_lists = {content.end, content.end};
    switch (id) {
    case CHUNK_POINT_ARRAY:
        // Points set the count; what stands beside them only raises it.
        mesh.num_vertices = mesh.has_points ? mesh.num_vertices : 0;
        return take_vertices(mesh.has_points, content, 12);
    case CHUNK_POINT_FLAGS:
        return take_vertices(mesh.has_flags, content, 2);
    case CHUNK_TEXTURE_VERTICES:
        return take_vertices(mesh.has_texcoords, content, 8);
    case CHUNK_FACE_ARRAY:
        return take_faces(content, face_lists);
    default:
        return true;
    }
}

bool MeshCheck::take_vertices(bool& had_one, Span content, std::uint32_t element_size) {
    if (std::exchange(had_one, true))
        return reader.refuse(content.begin, "a mesh has two lists of one kind");
    std::uint32_t count = 0;
    if (!reader.skip_count(content, element_size, count))
        return false;
    mesh.num_vertices = std::max(mesh.num_vertices, count);
    return true;
}

/// Faces are three indices and a word of flags each. Without any, lib3ds reads no further.
bool MeshCheck::take_faces(Span content, Span& face_lists) {
    if (std::exchange(mesh.has_faces, true))
        return reader.refuse(content.begin, "a mesh has two lists of one kind");
    if (!reader.skip_count(content, face_size, mesh.num_faces))
        return false;
    if (mesh.num_faces == 0)
        return true;
    mesh.faces_at = content.begin;
    std::uint32_t greatest = 0;
    const bool are_there =
        for_each_index([&greatest](std::uint32_t index) { greatest = std::max(greatest, index); });
    mesh.end_of_indices = greatest + 1;
    face_lists = content.behind(mesh.num_faces * face_size);
    return are_there;
}

/// Calls back for each corner of each face of the mesh that goes by.
/// @return false if the bytes can't be read
template<class Visitor>
bool MeshCheck::for_each_index(Visitor visit) {
    constexpr std::uint32_t faces_at_once = ByteWindow::largest_view / face_size;
    for (std::uint32_t done = 0; done < mesh.num_faces;) {
        const std::uint32_t count = std::min(mesh.num_faces - done, faces_at_once);
        const unsigned char* face =
            reader.bytes_at(mesh.faces_at + done * face_size, count * face_size);
        if (!face)
            return false;
        for (const unsigned char* const end = face + count * face_size; face != end;
             face += face_size) {
            visit(word_at(face));
            visit(word_at(face + 2));
            visit(word_at(face + 4));
        }
        done += count;
    }
    return true;
}

/// Without smoothing groups nobody looks around at a vertex, so that few meshes are looked through
/// once more for this.
bool MeshCheck::count_normal_steps() {
    if (mesh.normal_steps > 0)
        return true;
    corners_at.assign(mesh.end_of_indices, 0);
    // A file may have other faces by now.
    const bool are_there = for_each_index([this](std::uint32_t index) {
        if (index < corners_at.size())
            ++corners_at[index];
    });
    if (!are_there)
        return false;
    for (const std::uint64_t corners : corners_at)
        mesh.normal_steps += corners * corners;
    return true;
}

bool MeshCheck::take_face_list(std::uint16_t id, Span content) {
    std::uint32_t count = 0;
    switch (id) {
    case CHUNK_MATERIAL_GROUP:
        ++material_groups;
        return reader.skip_text(content, name_size) && reader.skip_count(content, 2, count);
    case CHUNK_SMOOTH_GROUP:
        return reader.expect(content.holds(std::uint64_t{mesh.num_faces} * 4), content.begin,
                             "smoothing groups don't cover the faces") &&
               count_normal_steps();
    case CHUNK_BOX_MAP:
        return skip_six_texts(content);
    default:
        return true;
    }
}

bool MeshCheck::skip_six_texts(Span content) {
    for (int i = 0; i < 6; ++i)
        if (!reader.skip_text(content, name_size))
            return false;
    return true;
}

} // namespace orvex::lib3ds
