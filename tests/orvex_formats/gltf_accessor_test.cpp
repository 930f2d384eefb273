// Numbers of glTF: all their types, where they lie, and what is wrong with them.

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "orvex_formats/gltf/private/gltf_accessor.h"
#include "orvex_formats/private/refusal.h"
#include "tests/orvex_formats/gltf_file.h"

#ifdef ORVEX_WITH_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

namespace orvex_test {

namespace {

using namespace orvex::formats;

/// The accessors of a file whose bytes are a chunk.
struct Opened {
    explicit Opened(const GltfFile& file)
        : tree(file.text("")) {
        parts.has_bytes = true;
        parts.bytes = file.bytes;
        buffers.emplace(tree.root(), parts, none, budget);
        accessors.emplace(tree.root(), *buffers, budget);
    }

    JsonTree tree;
    const InputFile none{std::vector<unsigned char>()};
    GltfParts parts;
    GltfBudget budget;
    std::optional<GltfBuffers> buffers;
    std::optional<GltfAccessors> accessors;
};

std::vector<float> floats_of(const GltfFile& file, std::size_t accessor = 0,
                             GltfAccessors::Selection selection = nullptr) {
    return Opened(file).accessors->floats(accessor, selection);
}

/// Why the numbers of the last accessor can't be had.
std::string mistake_of(const GltfFile& file) {
    try {
        const Opened opened(file);
        opened.accessors->size();
        Opened again(file);
        again.accessors->floats(again.accessors->size() - 1);
    } catch (const Refusal& refusal) {
        return refusal.what();
    }
    return "";
}

template<class Number>
std::vector<float> read_as(int code, std::initializer_list<Number> numbers, const char* more) {
    GltfFile file;
    file.add_view(bytes_of(numbers));
    file.add_accessor("SCALAR", code, numbers.size(), std::string(",'bufferView':0") + more);
    return floats_of(file);
}

using Floats = std::vector<float>;

TEST(GltfAccessor, gives_all_types_of_numbers) {
    EXPECT_EQ(read_as<std::int8_t>(5120, {-128, 0, 127}, ""), (Floats{-128, 0, 127}));
    EXPECT_EQ(read_as<std::uint8_t>(5121, {0, 255}, ""), (Floats{0, 255}));
    EXPECT_EQ(read_as<std::int16_t>(5122, {-32768, 32767}, ""), (Floats{-32768, 32767}));
    EXPECT_EQ(read_as<std::uint16_t>(5123, {0, 65535}, ""), (Floats{0, 65535}));
    EXPECT_EQ(read_as<std::uint32_t>(5125, {0, 16777216}, ""), (Floats{0, 16777216}));
    EXPECT_EQ(read_as<float>(5126, {-0.5f, 3e38f}, ""), (Floats{-0.5f, 3e38f}));
}

TEST(GltfAccessor, has_normalized_numbers_end_at_one) {
    const char* const normalized = ",'normalized':true";
    EXPECT_EQ(read_as<std::int8_t>(5120, {-128, -127, 0, 127}, normalized), (Floats{-1, -1, 0, 1}));
    EXPECT_EQ(read_as<std::uint8_t>(5121, {0, 51, 255}, normalized), (Floats{0, 0.2f, 1}));
    EXPECT_EQ(read_as<std::int16_t>(5122, {-32768, -32767, 32767}, normalized),
              (Floats{-1, -1, 1}));
    EXPECT_EQ(read_as<std::uint16_t>(5123, {0, 65535}, normalized), (Floats{0, 1}));
}

TEST(GltfAccessor, of_a_packed_mesh_has_normalized_numbers_end_at_one_too) {
    struct Row {
        int code;
        Floats packed, wanted;
    };
    for (const Row& row : {Row{5120, {-128, -127, 0, 127}, {-1, -1, 0, 1}},
                           Row{5121, {0, 51, 51, 255}, {0, 0.2f, 0.2f, 1}},
                           Row{5122, {-32768, -32767, 0, 32767}, {-1, -1, 0, 1}},
                           Row{5123, {0, 0, 0, 65535}, {0, 0, 0, 1}}}) {
        GltfFile file;
        file.add_accessor("SCALAR", row.code, 4, ",'normalized':true");
        file.add_accessor("SCALAR", row.code, 4);
        Opened opened(file);
        for (const std::size_t i : {0u, 1u})
            opened.accessors->unpack_numbers(i, row.packed, 1, opened.accessors->json(i));
        EXPECT_EQ(opened.accessors->floats(0), row.wanted) << row.code;
        EXPECT_EQ(opened.accessors->floats(1), row.packed) << row.code;
        const std::vector<std::uint32_t> ends = {0, 3};
        EXPECT_EQ(opened.accessors->floats(0, &ends), (Floats{row.wanted[0], row.wanted[3]}));
    }
}

TEST(GltfAccessor, steps_by_the_stride_of_its_view) {
    GltfFile file;
    file.add_view(bytes_of<float>({1, 2, 99, 3, 4, 99, 5, 6}), ",'byteStride':12");
    file.add_accessor("VEC2", 5126, 3, ",'bufferView':0");
    file.add_accessor("SCALAR", 5126, 2, ",'bufferView':0,'byteOffset':4");
    EXPECT_EQ(floats_of(file), (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(floats_of(file, 1), (Floats{2, 4}));
}

TEST(GltfAccessor, gives_chosen_elements_only) {
    GltfFile file;
    file.add_floats("VEC2", 2, {1, 2, 3, 4, 5, 6, 7, 8});
    const std::vector<std::uint32_t> chosen = {1, 3};
    EXPECT_EQ(floats_of(file, 0, &chosen), (Floats{3, 4, 7, 8}));
}

TEST(GltfAccessor, has_columns_of_matrices_begin_at_each_fourth_byte) {
    GltfFile file;
    file.add_view({1, 2, 0, 0, 3, 4, 0, 0});
    file.add_accessor("MAT2", 5121, 1, ",'bufferView':0");
    EXPECT_EQ(floats_of(file), (Floats{1, 2, 3, 4}));
}

TEST(GltfAccessor, without_a_view_is_all_zero) {
    GltfFile file;
    file.add_accessor("VEC3", 5126, 2);
    EXPECT_EQ(floats_of(file), Floats(6, 0.0f));
}

/// Four scalars, of which two are replaced.
GltfFile sparse_file(std::initializer_list<std::uint16_t> places, const char* base = "") {
    GltfFile file;
    file.add_view(bytes_of<float>({1, 2, 3, 4}));
    const std::size_t at = file.add_view(bytes_of(places));
    const std::size_t values = file.add_view(bytes_of<float>({10, 20}));
    file.add_accessor(
        "SCALAR", 5126, 4,
        base + std::string(",'sparse':{'count':") + std::to_string(places.size()) +
            ",'indices':{'bufferView':" + std::to_string(at) +
            ",'componentType':5123},'values':{'bufferView':" + std::to_string(values) + "}}");
    return file;
}

TEST(GltfAccessor, that_is_sparse_has_some_numbers_from_elsewhere) {
    EXPECT_EQ(floats_of(sparse_file({1, 3}, ",'bufferView':0")), (Floats{1, 10, 3, 20}));
    EXPECT_EQ(floats_of(sparse_file({0, 3})), (Floats{10, 0, 0, 20}));
    const std::vector<std::uint32_t> chosen = {2, 3};
    EXPECT_EQ(floats_of(sparse_file({1, 3}, ",'bufferView':0"), 0, &chosen), (Floats{3, 20}));
}

TEST(GltfAccessor, that_is_sparse_begins_where_its_offsets_say) {
    GltfFile file;
    file.add_view(bytes_of<std::uint16_t>({0, 0, 1, 3}));
    file.add_view(bytes_of<float>({5, 10, 20}));
    file.add_accessor("SCALAR", 5126, 4,
                      ",'sparse':{'count':2,"
                      "'indices':{'bufferView':0,'byteOffset':4,'componentType':5123},"
                      "'values':{'bufferView':1,'byteOffset':4}}");
    EXPECT_EQ(floats_of(file), (Floats{0, 10, 0, 20}));
}

TEST(GltfAccessor, whose_sparse_places_are_wrong_is_refused) {
    const char* const rest = " is beyond the accessor, or not above the one before";
    EXPECT_EQ(mistake_of(sparse_file({1, 4})),
              std::string("accessors[0].sparse: index 4 in place 1") + rest);
    EXPECT_EQ(mistake_of(sparse_file({2, 1})),
              std::string("accessors[0].sparse: index 1 in place 1") + rest);
    EXPECT_EQ(mistake_of(sparse_file({2, 2})),
              std::string("accessors[0].sparse: index 2 in place 1") + rest);
    EXPECT_EQ(mistake_of(sparse_file({0, 1, 2, 3, 4})),
              "accessors[0].sparse.count: not from 1 to the accessor's 4");
    EXPECT_EQ(
        mistake_of(sparse_file({0, 1, 2})),
        "accessors[0].sparse.values: 3 elements lie past the end of view 2, which has 8 bytes");
}

TEST(GltfAccessor, whose_sparse_places_are_no_indices_is_refused) {
    for (const char* const code : {"5120", "5122", "5126"}) {
        GltfFile file = sparse_file({1, 3});
        file.accessors.replace(file.accessors.find("5123"), 4, code);
        EXPECT_EQ(mistake_of(file), "accessors[0].sparse.indices.componentType: no type of indices")
            << code;
    }
}

TEST(GltfAccessor, that_lies_elsewhere_is_refused_before_it_is_read) {
    struct Row {
        const char* accessor;
        const char* reason;
    };
    const Row rows[] = {
        {"'type':'SCALAR','componentType':5126,'count':5,'bufferView':0",
         ": 5 elements lie past the end of view 0, which has 16 bytes"},
        {"'type':'SCALAR','componentType':5126,'count':4294967295,'bufferView':0",
         ": 4294967295 elements lie past the end of view 0, which has 16 bytes"},
        {"'type':'SCALAR','componentType':5126,'count':4294967296,'bufferView':0",
         ".count: not from 1 to 4294967295"},
        {"'type':'SCALAR','componentType':5126,'count':0,'bufferView':0",
         ".count: not from 1 to 4294967295"},
        {"'type':'SCALAR','componentType':5126,'count':1,'bufferView':0,'byteOffset':16",
         ": 1 elements lie past the end of view 0, which has 16 bytes"},
        {"'type':'SCALAR','componentType':5126,'count':1,'bufferView':0,"
         "'byteOffset':9007199254740988",
         ": 1 elements lie past the end of view 0, which has 16 bytes"},
        {"'type':'SCALAR','componentType':5126,'count':1,'bufferView':0,'byteOffset':2",
         ": byteOffset isn't a multiple of 4"},
        {"'type':'SCALAR','componentType':5124,'count':1,'bufferView':0",
         ".componentType: 5124 is no type of numbers"},
        {"'type':'VEC5','componentType':5126,'count':1,'bufferView':0",
         ".type: no type of elements"},
        {"'type':'SCALAR','componentType':5126,'count':1,'bufferView':9",
         ".bufferView: 9 is beyond the 2 views"},
        {"'type':'SCALAR','componentType':5126,'count':1,'bufferView':0,'normalized':true",
         ".normalized: numbers of this type can't be normalized"},
        {"'type':'VEC3','componentType':5126,'count':1,'bufferView':1",
         ": its elements have 12 bytes, and the stride of its view is 8"},
        {"'type':'VEC4','componentType':5126,'count':4294967295",
         ": the model would become far larger than its file"},
    };
    for (const Row& row : rows) {
        GltfFile file;
        file.add_view(bytes_of<float>({1, 2, 3, 4}));
        file.add_view(bytes_of<float>({1, 2, 3, 4}), ",'byteStride':8");
        file.accessors = std::string("{") + row.accessor + "}";
        EXPECT_EQ(mistake_of(file), std::string("accessors[0]") + row.reason) << row.accessor;
    }
}

TEST(GltfAccessor, in_a_view_that_lies_elsewhere_is_refused) {
    struct Row {
        const char* view;
        const char* reason;
    };
    const Row rows[] = {
        {"'byteLength':17",
         ": 17 bytes from byte 0 on lie past the end of its buffer, which has 16"},
        {"'byteOffset':16,'byteLength':1",
         ": 1 bytes from byte 16 on lie past the end of its buffer, which has 16"},
        {"'byteOffset':9007199254740991,'byteLength':9007199254740991",
         ": 9007199254740991 bytes from byte 9007199254740991 on lie past the end of its buffer, "
         "which has 16"},
        {"'byteLength':16,'byteStride':0",
         ".byteStride: 0 is no stride: those are 4 to 252, in steps of 4"},
        {"'byteLength':16,'byteStride':1",
         ".byteStride: 1 is no stride: those are 4 to 252, in steps of 4"},
        {"'byteLength':16,'byteStride':6",
         ".byteStride: 6 is no stride: those are 4 to 252, in steps of 4"},
        {"'byteLength':16,'byteStride':256",
         ".byteStride: 256 is no stride: those are 4 to 252, in steps of 4"},
    };
    for (const Row& row : rows) {
        GltfFile file;
        file.add_floats("SCALAR", 1, {1, 2, 3, 4});
        file.views = std::string("{'buffer':0,") + row.view + "}";
        EXPECT_EQ(mistake_of(file), std::string("bufferViews[0]") + row.reason) << row.view;
    }
}

TEST(GltfAccessor, of_indices_has_whole_numbers_only) {
    const auto indices_of = [](int code, const char* type, const char* more) -> std::string {
        GltfFile file;
        file.add_view(bytes_of<std::uint32_t>({7, 0, 0, 0}));
        file.add_accessor(type, code, 1, std::string(",'bufferView':0") + more);
        try {
            return std::to_string(Opened(file).accessors->indices(0).at(0));
        } catch (const Refusal& refusal) {
            return refusal.what();
        }
    };
    for (const int code : {5121, 5123, 5125})
        EXPECT_EQ(indices_of(code, "SCALAR", ""), "7");
    const char* const reason =
        "accessors[0]: used as indices, and of a type that is none of theirs";
    for (const int code : {5120, 5122, 5126})
        EXPECT_EQ(indices_of(code, "SCALAR", ""), reason);
    EXPECT_EQ(indices_of(5123, "VEC2", ""), reason);
    EXPECT_EQ(indices_of(5123, "SCALAR", ",'normalized':true"), reason);
}

#ifdef ORVEX_WITH_MESHOPTIMIZER

/// Four places, packed.
std::vector<unsigned char> packed_places() {
    const float places[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    std::vector<unsigned char> bytes(meshopt_encodeVertexBufferBound(4, 12));
    bytes.resize(meshopt_encodeVertexBuffer(bytes.data(), bytes.size(), places, 4, 12));
    return bytes;
}

/// A view whose bytes are packed. @param more  of how they are
GltfFile packed_file(const std::vector<unsigned char>& bytes, const std::string& more) {
    GltfFile file;
    file.add_view(bytes);
    file.views += ",{'buffer':1,'byteLength':48,'byteStride':12,'extensions':{"
                  "'EXT_meshopt_compression':{'buffer':0,'byteLength':" +
                  std::to_string(bytes.size()) + more + "}}}";
    file.add_accessor("VEC3", 5126, 4, ",'bufferView':1");
    return file;
}

std::string mistake_of_packed(const std::vector<unsigned char>& bytes, const std::string& more,
                              Floats* floats = nullptr) {
    GltfFile file = packed_file(bytes, more);
    std::string text = file.text("");
    const std::string buffers = "\"buffers\":[";
    text.replace(text.rfind("}]}"), 3,
                 json("},{'byteLength':48,'extensions':{'EXT_meshopt_compression':{'fallback':true}"
                      "}}]}"));
    try {
        const JsonTree tree(std::move(text));
        GltfParts parts;
        parts.has_bytes = true;
        parts.bytes = file.bytes;
        GltfBudget budget;
        const InputFile none{std::vector<unsigned char>()};
        GltfBuffers opened(tree.root(), parts, none, budget);
        GltfAccessors accessors(tree.root(), opened, budget);
        const Floats found = accessors.floats(0);
        if (floats)
            *floats = found;
    } catch (const Refusal& refusal) {
        return refusal.what();
    }
    return "";
}

TEST(GltfAccessor, of_a_packed_view_is_unpacked) {
    Floats floats;
    EXPECT_EQ(mistake_of_packed(packed_places(), ",'count':4,'byteStride':12,'mode':'ATTRIBUTES'",
                                &floats),
              "");
    EXPECT_EQ(floats, (Floats{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}));
}

/// The numbers of an accessor of VEC4 whose bytes are packed and filtered.
template<class Number>
Floats filtered(std::initializer_list<Number> numbers, const char* filter, int code) {
    const std::vector<unsigned char> plain = bytes_of(numbers);
    constexpr std::size_t stride = 4 * sizeof(Number);
    const std::size_t count = plain.size() / stride;
    std::vector<unsigned char> bytes(meshopt_encodeVertexBufferBound(count, stride));
    bytes.resize(
        meshopt_encodeVertexBuffer(bytes.data(), bytes.size(), plain.data(), count, stride));
    GltfFile file;
    file.bytes = bytes; // more than there are unpacked
    file.views = "{'buffer':0,'byteLength':" + std::to_string(plain.size()) +
                 ",'extensions':{'EXT_meshopt_compression':{'buffer':0,'byteLength':" +
                 std::to_string(bytes.size()) + ",'count':" + std::to_string(count) +
                 ",'byteStride':" + std::to_string(stride) + ",'mode':'ATTRIBUTES','filter':'" +
                 filter + "'}}}";
    file.add_accessor("VEC4", code, count, ",'bufferView':0");
    return floats_of(file);
}

TEST(GltfAccessor, of_a_packed_view_is_filtered) {
    // Directions as places on an octahedron, of which the third number is the whole.
    EXPECT_EQ(filtered<std::int8_t>({0, 0, 127, 5, 127, 0, 127, 6}, "OCTAHEDRAL", 5120),
              (Floats{0, 0, 127, 5, 127, 0, 0, 6}));
    EXPECT_EQ(filtered<std::int16_t>({0, 0, 32767, 5, 0, 32767, 32767, 6}, "OCTAHEDRAL", 5122),
              (Floats{0, 0, 32767, 5, 0, 32767, 0, 6}));
    // Turns without their largest part, whose place is in the last two bits.
    EXPECT_EQ(filtered<std::int16_t>({0, 0, 0, 32766, 0, 0, 0, 32767}, "QUATERNION", 5122),
              (Floats{0, 0, 32767, 0, 0, 0, 0, 32767}));
    // Whole numbers, with a power of 2 in the last eight bits.
    EXPECT_EQ(filtered<std::uint32_t>({3, 0xff000003, 0x01000003, 0x00fffffd}, "EXPONENTIAL", 5126),
              (Floats{3, 1.5f, 6, -3}));
}

TEST(GltfAccessor, of_a_packed_view_that_lies_is_refused) {
    struct Row {
        const char* more;
        const char* reason;
    };
    const Row rows[] = {
        {",'count':4,'byteStride':12,'mode':'OTHER'", "its mode is none"},
        {",'count':4,'byteStride':10,'mode':'ATTRIBUTES'", "its stride doesn't fit its mode"},
        {",'count':4,'byteStride':0,'mode':'ATTRIBUTES'", "its stride doesn't fit its mode"},
        {",'count':4,'byteStride':260,'mode':'ATTRIBUTES'", "its stride doesn't fit its mode"},
        {",'count':4,'byteStride':12,'mode':'TRIANGLES'", "its stride doesn't fit its mode"},
        {",'count':4,'byteStride':4,'mode':'TRIANGLES'",
         "its count of corners can't be divided by 3"},
        {",'count':12,'byteStride':4,'mode':'INDICES','filter':'OCTAHEDRAL'",
         "only attributes have a filter"},
        {",'count':4,'byteStride':12,'mode':'ATTRIBUTES','filter':'OCTAHEDRAL'",
         "its stride doesn't fit its filter"},
        {",'count':4,'byteStride':12,'mode':'ATTRIBUTES','filter':'QUATERNION'",
         "its stride doesn't fit its filter"},
        {",'count':4,'byteStride':12,'mode':'ATTRIBUTES','filter':'X'", "its filter is none"},
        {",'count':9007199254740991,'byteStride':256,'mode':'ATTRIBUTES'",
         "the model would become far larger than its file"},
        {",'count':3,'byteStride':12,'mode':'ATTRIBUTES'", "unpacked, it is shorter than the view"},
        {",'count':5,'byteStride':256,'mode':'ATTRIBUTES'", "the packed bytes are damaged"},
        {",'count':12,'byteStride':4,'mode':'TRIANGLES'", "the packed bytes are damaged"},
        {",'count':12,'byteStride':4,'mode':'INDICES'", "the packed bytes are damaged"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(mistake_of_packed(packed_places(), row.more),
                  std::string("bufferViews[1].extensions.EXT_meshopt_compression: ") + row.reason)
            << row.more;
}

#endif

} // namespace

} // namespace orvex_test
