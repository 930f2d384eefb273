// The library that unpacks is large, and works on what strangers wrote: it runs in the importer.

#include "orvex_formats/gltf/private/draco_meshes.h"

#include <cfloat>
#include <string>
#include <utility>

#include "orvex_formats/private/answer_stream.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

bool can_unpack_draco() {
    return !installed_importer(0).program.empty();
}

// --- Answers ----------------------------------------------------------------------------------

namespace {

constexpr std::uint32_t most_attributes = 64, most_width = 16;

DracoMesh::Attribute take_attribute(AnswerStream& stream, std::size_t num_vertices) {
    DracoMesh::Attribute attribute;
    attribute.width = stream.take<std::uint32_t>();
    if (attribute.width == 0 || attribute.width > most_width)
        stream.refuse_answer("elements of a width that none has");
    attribute.numbers.resize(stream.take_count(sizeof(float)));
    if (attribute.numbers.size() != num_vertices * attribute.width)
        stream.refuse_answer("a list that doesn't fit that of the vertices");
    stream.fill_with_floats(attribute.numbers, -FLT_MAX, FLT_MAX);
    return attribute;
}

DracoMesh take_mesh(AnswerStream& stream) {
    DracoMesh mesh;
    mesh.num_vertices = stream.take<std::uint32_t>();
    mesh.corners.resize(stream.take_count(sizeof(std::uint32_t)));
    if (mesh.corners.size() % 3 != 0)
        stream.refuse_answer("a triangle without three corners");
    stream.fill_with_places(mesh.corners, mesh.num_vertices);
    const auto count = stream.take<std::uint32_t>();
    if (count > most_attributes)
        stream.refuse_answer("more attributes than any mesh has");
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto id = stream.take<std::uint32_t>();
        mesh.attributes[id] = take_attribute(stream, mesh.num_vertices);
    }
    return mesh;
}

} // namespace

std::vector<DracoMesh> read_draco_answer(const InputFile& answer, std::size_t count) {
    AnswerStream stream(answer);
    std::vector<DracoMesh> meshes;
    for (std::size_t i = 0; i < count; ++i)
        meshes.push_back(take_mesh(stream));
    stream.finish();
    return meshes;
}

// --- Primitives -------------------------------------------------------------------------------

namespace {

class DracoUnpacker {
public:
    DracoUnpacker(GltfBuffers& buffers, GltfAccessors& accessors, GltfBudget& budget)
        : buffers(buffers)
        , accessors(accessors)
        , budget(budget) {}

    void find(const Json& meshes) {
        for (std::size_t i = 0; i < meshes.size(); ++i) {
            const Json primitives = meshes.at(i).list("primitives");
            for (std::size_t j = 0; j < primitives.size(); ++j)
                find_in(primitives.at(j));
        }
    }

    void unpack(const Importer& importer) {
        if (packed.empty())
            return;
        std::vector<DracoMesh> meshes;
        try {
            const InputFile input(std::move(bytes));
            meshes = read_draco_answer(
                ask_importer(importer, {{"draco", std::to_string(places.size())}}, input),
                places.size());
        } catch (const Refusal& refusal) {
            packed[0].told.refuse(refusal.what());
        }
        for (const Packed& one : packed)
            hand_out(one, meshes[one.place]);
    }

private:
    /// A primitive whose mesh is packed.
    struct Packed {
        Json primitive, told;
        std::size_t place; ///< among the packed meshes
    };

    void find_in(const Json& primitive) {
        const Json told = primitive.object("extensions").object("KHR_draco_mesh_compression");
        if (!told)
            return;
        if (primitive.whole("mode", 4) != 4)
            primitive.refuse("a packed mesh that isn't one of triangles");
        const std::size_t view = told.need("bufferView").as_index(buffers.num_views(), "views");
        const auto [entry, is_new] = places.emplace(view, places.size());
        if (is_new)
            add_bytes(view, told);
        packed.push_back({primitive, told, entry->second});
    }

    /// The size of a mesh stands before it.
    void add_bytes(std::size_t view, const Json& told) {
        const GltfBuffers::Bytes source = buffers.bytes_of_view(view);
        budget.take(source.size() + sizeof(std::uint64_t), told);
        const std::uint64_t size = source.size();
        const auto* const first = reinterpret_cast<const unsigned char*>(&size);
        bytes.insert(bytes.end(), first, first + sizeof size);
        bytes.insert(bytes.end(), source.begin(), source.end());
    }

    void hand_out(const Packed& one, const DracoMesh& mesh) {
        const std::size_t indices = one.primitive.index("indices", accessors.size(), "accessors");
        if (indices == Json::no_index)
            one.primitive.refuse("a packed mesh without \"indices\"");
        budget.take(mesh.corners.size(), sizeof(std::uint32_t), one.told);
        accessors.unpack_indices(indices, mesh.corners, one.told);
        const Json ids = one.told.object("attributes");
        const Json attributes = one.primitive.object("attributes");
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const std::string name(ids.at(i).key());
            const std::size_t place = attributes.index(name, accessors.size(), "accessors");
            const auto found = mesh.attributes.find(
                static_cast<std::uint32_t>(ids.at(i).as_index(UINT32_MAX, "attributes")));
            if (place == Json::no_index || found == mesh.attributes.end())
                ids.at(i).refuse("the packed mesh or the primitive has no such attribute");
            budget.take(found->second.numbers.size(), sizeof(float), ids.at(i));
            accessors.unpack_numbers(place, found->second.numbers, found->second.width, ids.at(i));
        }
    }

    GltfBuffers& buffers;
    GltfAccessors& accessors;
    GltfBudget& budget;
    std::vector<Packed> packed;
    std::map<std::size_t, std::size_t> places; ///< of views among the packed meshes
    std::vector<unsigned char> bytes;          ///< of these, one behind the other
};

} // namespace

void unpack_draco(const Json& root, GltfBuffers& buffers, GltfAccessors& accessors,
                  GltfBudget& budget, const Importer& importer) {
    DracoUnpacker unpacker(buffers, accessors, budget);
    unpacker.find(root.list("meshes"));
    unpacker.unpack(importer);
}

} // namespace orvex::formats
