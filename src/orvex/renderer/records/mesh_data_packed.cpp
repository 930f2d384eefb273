#include "orvex/renderer/records/mesh_data_packed.h"

#include "orvex/base/log_mgr.h"
#include "orvex/math/aligned_new.h"
#include "orvex/platform/private/constant_array.h"
#include "orvex/renderer/records/private/vertex_access.h"

// One template makes the three packed stores out of their records: which fields a record has
// decides what is stored, what is read as a default and what is ignored.

namespace orvex {

using namespace vertex_access;

namespace {

template<class Record>
concept HasColor = requires(Record record) {
    record.color;
};

template<class Record>
concept HasTangent = requires(Record record) {
    record.tangent;
};

template<class Field>
constexpr unsigned int dimension = sizeof(Field) / sizeof(float);

/// What differs between the formats beside their records.
template<class Store>
struct Format;

template<>
struct Format<MeshData_64> {
    static constexpr const char* failure = "MeshData_64::alloc_vertex_data() - exception: %s";
    static constexpr auto* aligned_new = AlignedNew_Vertex_64;
    static constexpr auto* aligned_delete = AlignedDelete_Vertex_64;
};

template<>
struct Format<MeshData_32> {
    static constexpr auto* aligned_new = AlignedNew_Vertex_32;
    static constexpr auto* aligned_delete = AlignedDelete_Vertex_32;
    static constexpr const char* failure = "MeshData_32::alloc_vertex_data() - exception: %s";
};

template<>
struct Format<MeshData_PhysXCloth> {
    static constexpr auto* aligned_new = AlignedNew_Vertex_PhysXCloth;
    static constexpr auto* aligned_delete = AlignedDelete_Vertex_PhysXCloth;
    static constexpr const char* failure =
        "MeshData_PhysXCloth::alloc_vertex_data() - exception: %s";
};

template<class Record>
Vertex from_record(const Record& record) {
    Vertex vertex;
    vertex.position = widen(record.position);
    vertex.normal = widen(record.normal);
    vertex.uv0 = widen(record.uv0);
    if constexpr (HasColor<Record>)
        vertex.color = widen(record.color);
    if constexpr (HasTangent<Record>)
        vertex.tangent = widen(record.tangent);
    return vertex;
}

template<class Record, class Store>
Vertex from_arrays(const Store& store, unsigned long i) {
    Vertex vertex;
    vertex.position = element(store.position, i);
    vertex.normal = element(store.normal, i);
    vertex.uv0 = element(store.uv0, i);
    if constexpr (HasColor<Record>)
        vertex.color = element(store.color, i);
    if constexpr (HasTangent<Record>)
        vertex.tangent = element(store.tangent, i);
    return vertex;
}

} // namespace

template<class Store, class Record>
MeshDataPacked<Store, Record>::MeshDataPacked(VERTEX_FORMAT format)
    : MeshData(format) {
    uv1_attrib_location = -1;
}

template<class Store, class Record>
Vertex* MeshDataPacked<Store, Record>::get_vertex(unsigned long) {
    return nullptr;
}

template<class Store, class Record>
Vertex MeshDataPacked<Store, Record>::get_vertex_v2(unsigned long i) {
    if (i >= num_vertices)
        return Vertex();
    return self().vertices ? from_record(self().vertices[i]) : from_arrays<Record>(self(), i);
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_vertex_elt_size() {
    return sizeof(Record);
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_vertex_ptr() {
    return self().vertices;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_position_elt_size() {
    return sizeof(Record::position);
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_color_elt_size() {
    if constexpr (HasColor<Record>)
        return sizeof(Record::color);
    else
        return 0;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_normal_elt_size() {
    return sizeof(Record::normal);
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_uv0_elt_size() {
    return sizeof(Record::uv0);
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_uv1_elt_size() {
    return 0;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_tangent_elt_size() {
    if constexpr (HasTangent<Record>)
        return sizeof(Record::tangent);
    else
        return 0;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_position_vector_dim() {
    return dimension<decltype(Record::position)>;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_color_vector_dim() {
    if constexpr (HasColor<Record>)
        return dimension<decltype(Record::color)>;
    else
        return 0;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_normal_vector_dim() {
    return dimension<decltype(Record::normal)>;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_uv0_vector_dim() {
    return dimension<decltype(Record::uv0)>;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_uv1_vector_dim() {
    return 0;
}

template<class Store, class Record>
unsigned int MeshDataPacked<Store, Record>::get_tangent_vector_dim() {
    if constexpr (HasTangent<Record>)
        return dimension<decltype(Record::tangent)>;
    else
        return 0;
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_position_ptr() {
    return self().position.data;
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_color_ptr() {
    if constexpr (HasColor<Record>)
        return self().color.data;
    else
        return nullptr;
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_normal_ptr() {
    return self().normal.data;
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_uv0_ptr() {
    return self().uv0.data;
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_uv1_ptr() {
    return nullptr;
}

template<class Store, class Record>
void* MeshDataPacked<Store, Record>::get_tangent_ptr() {
    if constexpr (HasTangent<Record>)
        return self().tangent.data;
    else
        return nullptr;
}

template<class Store, class Record>
vec3 MeshDataPacked<Store, Record>::get_position(unsigned long i) const {
    return read_vec3(stored(self(), self().position, &Record::position, i));
}

template<class Store, class Record>
vec4 MeshDataPacked<Store, Record>::get_position_4f(unsigned long i) const {
    return read_vec4(stored(self(), self().position, &Record::position, i));
}

template<class Store, class Record>
vec4 MeshDataPacked<Store, Record>::get_color([[maybe_unused]] unsigned long i) const {
    if constexpr (HasColor<Record>)
        return read_vec4(stored(self(), self().color, &Record::color, i));
    else
        return vec4();
}

template<class Store, class Record>
vec3 MeshDataPacked<Store, Record>::get_normal(unsigned long i) const {
    return read_vec3(stored(self(), self().normal, &Record::normal, i));
}

template<class Store, class Record>
vec4 MeshDataPacked<Store, Record>::get_uv0(unsigned long i) const {
    return read_vec4(stored(self(), self().uv0, &Record::uv0, i));
}

template<class Store, class Record>
vec4 MeshDataPacked<Store, Record>::get_uv1(unsigned long) const {
    return vec4();
}

template<class Store, class Record>
vec4 MeshDataPacked<Store, Record>::get_tangent([[maybe_unused]] unsigned long i) const {
    if constexpr (HasTangent<Record>)
        return read_vec4(stored(self(), self().tangent, &Record::tangent, i));
    else
        return vec4();
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_position(unsigned long i, const vec3& value) {
    write(stored(self(), self().position, &Record::position, i), value);
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_position(unsigned long i, const vec4& value) {
    write(stored(self(), self().position, &Record::position, i), value);
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_normal(unsigned long i, const vec3& value) {
    write(stored(self(), self().normal, &Record::normal, i), value);
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_color([[maybe_unused]] unsigned long i,
                                              [[maybe_unused]] const vec4& value) {
    if constexpr (HasColor<Record>)
        write(stored(self(), self().color, &Record::color, i), value);
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_uv0(unsigned long i, const vec4& value) {
    write(stored(self(), self().uv0, &Record::uv0, i), value);
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_uv1(unsigned long, const vec4&) {}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::set_tangent([[maybe_unused]] unsigned long i,
                                                [[maybe_unused]] const vec4& value) {
    if constexpr (HasTangent<Record>)
        write(stored(self(), self().tangent, &Record::tangent, i), value);
}

namespace {

void allocate(VertexAttribArray& array, unsigned long count, int alignment) {
    allocate_optional_array(array, count, alignment);
}

void allocate(VertexAttribArray_3f& array, unsigned long count, int alignment) {
    allocate_array(array, count, alignment, AlignedNew_vec3);
}

void allocate(VertexAttribArray_2f& array, unsigned long count, int alignment) {
    allocate_array(array, count, alignment, AlignedNew_vec2);
}

template<class Record, class Store, class Action>
void for_each_array(Store& store, Action action) {
    action(store.position);
    if constexpr (HasColor<Record>)
        action(store.color);
    action(store.normal);
    action(store.uv0);
    if constexpr (HasTangent<Record>)
        action(store.tangent);
}

} // namespace

template<class Store, class Record>
bool MeshDataPacked<Store, Record>::alloc_vertex_data(unsigned long count) {
    // What was there goes first, so that no short array is left behind a larger count.
    free_vertex_arrays();
    free_vertex_particles();
    num_vertices = count;
    draw_start_vertex = 0;
    draw_end_vertex = count;

    const auto allocate_all = [&] {
        if (separate_vertex_arrays)
            for_each_array<Record>(self(), [&](auto& array) { allocate(array, count, alignment); });
        else
            allocate_records(self(), count, Format<Store>::aligned_new);
        vertex_particles = new_constant_array<vec4>(count, vec4());
    };
    return allocate_or_report(allocate_all, [](const char* error) {
        LogMgr::get()->tracef_debug(Format<Store>::failure, error ? error : "unknown");
    });
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::free_vertex_data() {
    if (num_vertices == 0)
        return;
    free_vertex_arrays();
    free_vertex_particles();
    num_vertices = 0;
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::update_attrib_locations() {
    self().position.attrib_location = position_attrib_location;
    self().normal.attrib_location = normal_attrib_location;
    self().uv0.attrib_location = uv0_attrib_location;
    if constexpr (HasColor<Record>)
        self().color.attrib_location = color_attrib_location;
    if constexpr (HasTangent<Record>)
        self().tangent.attrib_location = tangent_attrib_location;
}

template<class Store, class Record>
void MeshDataPacked<Store, Record>::free_vertex_arrays() {
    free_records(self(), Format<Store>::aligned_delete);
    MeshData::free_vertex_arrays();
    for_each_array<Record>(self(), [&](auto& array) { free_vertex_attrib_array(array); });
}

template<class Store, class Record>
Store& MeshDataPacked<Store, Record>::self() {
    return static_cast<Store&>(*this);
}

template<class Store, class Record>
const Store& MeshDataPacked<Store, Record>::self() const {
    return static_cast<const Store&>(*this);
}

template struct MeshDataPacked<MeshData_64, Vertex_64>;
template struct MeshDataPacked<MeshData_32, Vertex_32>;
template struct MeshDataPacked<MeshData_PhysXCloth, Vertex_PhysXCloth>;

MeshData_64::MeshData_64(VERTEX_FORMAT format)
    : MeshDataPacked(format) {
    MeshDataPacked::update_attrib_locations();
}

MeshData_64::~MeshData_64() {
    MeshDataPacked::free_vertex_arrays();
}

MeshData_32::MeshData_32(VERTEX_FORMAT format)
    : MeshDataPacked(format) {
    color_attrib_location = -1;
    tangent_attrib_location = -1;
    MeshDataPacked::update_attrib_locations();
}

MeshData_32::~MeshData_32() {
    MeshDataPacked::free_vertex_arrays();
}

MeshData_PhysXCloth::MeshData_PhysXCloth(VERTEX_FORMAT format)
    : MeshDataPacked(format) {
    MeshDataPacked::update_attrib_locations();
}

MeshData_PhysXCloth::~MeshData_PhysXCloth() {
    MeshDataPacked::free_vertex_arrays();
}

} // namespace orvex
