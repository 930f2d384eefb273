#pragma once

/// @file
/// The packed mesh stores: what they share, and the three formats.

#include "orvex/api.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

/// What the packed formats share: every access of `MeshData`, on the arrays and records of `Store`.
///
/// Hosts use `MeshData_64`, `MeshData_32` or `MeshData_PhysXCloth`. An attribute that `Record`
/// lacks reads as its default and ignores writes. User attributes come from
/// `alloc_user_vertex_attribs`, after the vertices.
template<class Store, class Record>
struct ORVEX_API MeshDataPacked : MeshData {
    /// Makes an empty store without a second texture layer.
    explicit MeshDataPacked(VERTEX_FORMAT format);

    /// @cond
    Vertex* get_vertex(unsigned long i) override;
    Vertex get_vertex_v2(unsigned long i) override;
    unsigned int get_vertex_elt_size() override;
    void* get_vertex_ptr() override;
    unsigned int get_position_elt_size() override;
    unsigned int get_color_elt_size() override;
    unsigned int get_normal_elt_size() override;
    unsigned int get_uv0_elt_size() override;
    unsigned int get_uv1_elt_size() override;
    unsigned int get_tangent_elt_size() override;
    unsigned int get_position_vector_dim() override;
    unsigned int get_color_vector_dim() override;
    unsigned int get_normal_vector_dim() override;
    unsigned int get_uv0_vector_dim() override;
    unsigned int get_uv1_vector_dim() override;
    unsigned int get_tangent_vector_dim() override;
    void* get_position_ptr() override;
    void* get_color_ptr() override;
    void* get_normal_ptr() override;
    void* get_uv0_ptr() override;
    void* get_uv1_ptr() override;
    void* get_tangent_ptr() override;
    vec3 get_position(unsigned long i) const override;
    vec4 get_position_4f(unsigned long i) const override;
    vec4 get_color(unsigned long i) const override;
    vec3 get_normal(unsigned long i) const override;
    vec4 get_uv0(unsigned long i) const override;
    vec4 get_uv1(unsigned long i) const override;
    vec4 get_tangent(unsigned long i) const override;
    void set_position(unsigned long i, const vec3& value) override;
    void set_position(unsigned long i, const vec4& value) override;
    void set_normal(unsigned long i, const vec3& value) override;
    void set_color(unsigned long i, const vec4& value) override;
    void set_uv0(unsigned long i, const vec4& value) override;
    void set_uv1(unsigned long i, const vec4& value) override;
    void set_tangent(unsigned long i, const vec4& value) override;
    bool alloc_vertex_data(unsigned long count) override;
    void free_vertex_data() override;

protected:
    void update_attrib_locations() override;
    void free_vertex_arrays() override;
    /// @endcond

private:
    Store& self();
    const Store& self() const;
};

// Arguments of an exported template: what they are declared as here decides what it exports.
struct ORVEX_API MeshData_32;
struct ORVEX_API MeshData_64;
struct ORVEX_API MeshData_PhysXCloth;

extern template struct MeshDataPacked<MeshData_64, Vertex_64>;
extern template struct MeshDataPacked<MeshData_32, Vertex_32>;
extern template struct MeshDataPacked<MeshData_PhysXCloth, Vertex_PhysXCloth>;

/// The store of `VERTEX_FORMAT_64`: positions and normals of three floats, one texture layer.
struct ORVEX_API MeshData_64 : MeshDataPacked<MeshData_64, Vertex_64> {
    VertexAttribArray_3f position; ///< separate positions
    VertexAttribArray color;       ///< separate colours
    VertexAttribArray_3f normal;   ///< separate normals
    VertexAttribArray_2f uv0;      ///< separate texture coordinates
    VertexAttribArray tangent;     ///< separate tangents
    Vertex_64* vertices = nullptr; ///< the interleaved array

    /// Makes an empty store.
    explicit MeshData_64(VERTEX_FORMAT format = VERTEX_FORMAT_64);
    ~MeshData_64() override;
};

/// The store of `VERTEX_FORMAT_32`: position, normal and one texture layer, nothing else.
struct ORVEX_API MeshData_32 : MeshDataPacked<MeshData_32, Vertex_32> {
    VertexAttribArray_3f position; ///< separate positions
    VertexAttribArray_3f normal;   ///< separate normals
    VertexAttribArray_2f uv0;      ///< separate texture coordinates
    Vertex_32* vertices = nullptr; ///< the interleaved array

    /// Makes an empty store, without locations for colour and tangent.
    explicit MeshData_32(VERTEX_FORMAT format = VERTEX_FORMAT_32);
    ~MeshData_32() override;
};

/// The store of `VERTEX_FORMAT_PHYSX_CLOTH`: positions with a simulator's inverse mass in w.
struct ORVEX_API MeshData_PhysXCloth : MeshDataPacked<MeshData_PhysXCloth, Vertex_PhysXCloth> {
    VertexAttribArray position;            ///< separate positions
    VertexAttribArray color;               ///< separate colours
    VertexAttribArray_3f normal;           ///< separate normals
    VertexAttribArray_2f uv0;              ///< separate texture coordinates
    VertexAttribArray_3f tangent;          ///< separate tangents
    Vertex_PhysXCloth* vertices = nullptr; ///< the interleaved array

    /// Makes an empty store.
    explicit MeshData_PhysXCloth(VERTEX_FORMAT format = VERTEX_FORMAT_PHYSX_CLOTH);
    ~MeshData_PhysXCloth() override;
};

} // namespace orvex
