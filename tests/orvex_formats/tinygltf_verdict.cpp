// Says what tinygltf makes of each file.

#include <cstring>
#include <string>
#include <vector>

#include <tiny_gltf.h>

#include "orvex_formats/gltf/private/gltf_transform.h"
#include "verdict.h"

namespace {

using orvex::formats::GltfTransform;
using orvex_test::Verdict;

GltfTransform local(const tinygltf::Node& node) {
    GltfTransform made;
    if (node.matrix.size() == 16) {
        for (std::size_t i = 0; i < 12; ++i)
            made.columns[i] = node.matrix[4 * (i / 3) + i % 3];
        return made;
    }
    const auto part = [](const std::vector<double>& told, std::size_t i, double otherwise) {
        return i < told.size() ? told[i] : otherwise;
    };
    const auto three = [&](const std::vector<double>& told, double otherwise) {
        return std::array<double, 3>{part(told, 0, otherwise), part(told, 1, otherwise),
                                     part(told, 2, otherwise)};
    };
    const std::vector<double>& turn = node.rotation;
    return GltfTransform::of_parts(
        three(node.translation, 0.0),
        {part(turn, 0, 0.0), part(turn, 1, 0.0), part(turn, 2, 0.0), part(turn, 3, 1.0)},
        three(node.scale, 1.0));
}

std::size_t num_triangles(int mode, std::size_t corners) {
    if (mode == TINYGLTF_MODE_TRIANGLES)
        return corners / 3;
    const bool is_row = mode == TINYGLTF_MODE_TRIANGLE_STRIP || mode == TINYGLTF_MODE_TRIANGLE_FAN;
    return is_row && corners > 2 ? corners - 2 : 0;
}

void add_primitive(const tinygltf::Model& model, const tinygltf::Primitive& primitive,
                   const GltfTransform& world, Verdict& verdict) {
    const auto places = primitive.attributes.find("POSITION");
    if (places == primitive.attributes.end())
        return;
    const tinygltf::Accessor& accessor = model.accessors[static_cast<std::size_t>(places->second)];
    const std::size_t corners =
        primitive.indices < 0 ? accessor.count
                              : model.accessors[static_cast<std::size_t>(primitive.indices)].count;
    verdict.vertices += accessor.count;
    verdict.triangles += num_triangles(primitive.mode, corners);
    ++verdict.draws;
    // What is packed or put together is left to other judges.
    if (accessor.sparse.isSparse || accessor.bufferView < 0 ||
        accessor.componentType != TINYGLTF_COMPONENT_TYPE_FLOAT) {
        verdict.has_bounds = false;
        return;
    }
    const tinygltf::BufferView& view =
        model.bufferViews[static_cast<std::size_t>(accessor.bufferView)];
    const unsigned char* const bytes =
        model.buffers[static_cast<std::size_t>(view.buffer)].data.data() + view.byteOffset +
        accessor.byteOffset;
    for (std::size_t i = 0; i < accessor.count; ++i) {
        float place[3];
        std::memcpy(place, bytes + i * static_cast<std::size_t>(accessor.ByteStride(view)),
                    sizeof place);
        const orvex::vec3 placed = world.place({place[0], place[1], place[2]});
        verdict.add_place(placed.x, placed.y, placed.z);
    }
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the files of a test are.
void add_node(const tinygltf::Model& model, int place, const GltfTransform& parent,
              Verdict& verdict) {
    const tinygltf::Node& node = model.nodes[static_cast<std::size_t>(place)];
    const GltfTransform world = parent * local(node);
    if (node.mesh >= 0)
        for (const tinygltf::Primitive& primitive :
             model.meshes[static_cast<std::size_t>(node.mesh)].primitives)
            add_primitive(model, primitive, world, verdict);
    for (const int child : node.children)
        add_node(model, child, world, verdict);
}

void judge(const std::string& path) {
    tinygltf::TinyGLTF loader;
    tinygltf::Model model;
    std::string error, warning;
    const bool is_text = path.size() > 5 && path.substr(path.size() - 5) == ".gltf";
    if (!(is_text ? loader.LoadASCIIFromFile(&model, &error, &warning, path)
                  : loader.LoadBinaryFromFile(&model, &error, &warning, path)))
        return orvex_test::tell_refusal(error);
    Verdict verdict;
    if (!model.scenes.empty())
        for (const int node :
             model.scenes[static_cast<std::size_t>(std::max(model.defaultScene, 0))].nodes)
            add_node(model, node, GltfTransform(), verdict);
    for (const tinygltf::Material& material : model.materials) {
        const std::vector<double>& color = material.pbrMetallicRoughness.baseColorFactor;
        verdict.materials.push_back({material.name,
                                     {static_cast<float>(color[0]), static_cast<float>(color[1]),
                                      static_cast<float>(color[2])}});
    }
    tell(verdict);
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        judge(argv[i]);
}
