#pragma once

/// @file
/// One array of vertex attributes, as mesh stores and polylines hold them.

#include "orvex/fwd.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/geometry_enums.h"

namespace orvex {

/// What the three kinds of attribute array share. Use `VertexAttribArray`, `VertexAttribArray_3f`
/// or `VertexAttribArray_2f`.
///
/// The record doesn't own its elements: the store that holds it allocates and frees them.
template<class Element, unsigned int dimension>
struct VertexAttribArrayOf {
    unsigned long num_elements = 0; ///< element count
    /// The block behind an aligned array, as `AlignedNew_*` gave it; null for one made by `new[]`.
    unsigned char* raw_ptr = nullptr;
    Element* data = nullptr;  ///< the elements
    int attrib_location = -1; ///< generic attribute index in the GPU program, -1 for none
    bool need_update = false; ///< user attributes: to be uploaded at the next prepare

    /// Size of one element in bytes.
    unsigned int get_element_size() const { return sizeof(Element); }

    /// Number of floats in one element.
    unsigned int get_vector_dim() const { return dimension; }

    /// Size of the array in bytes, cut to 32 bits.
    unsigned int get_size() const {
        return static_cast<unsigned int>(get_element_size() * num_elements);
    }

    /// Forgets the elements without freeing them. The location and `need_update` stay.
    void reset() {
        num_elements = 0;
        raw_ptr = nullptr;
        data = nullptr;
    }
};

/// An array of `vec4`.
struct VertexAttribArray : VertexAttribArrayOf<vec4, 4> {
    /// Forgets the elements without freeing them, and lowers `need_update`. The location stays.
    void reset() {
        VertexAttribArrayOf::reset();
        need_update = false;
    }
};

/// An array of `vec3`.
struct VertexAttribArray_3f : VertexAttribArrayOf<vec3, 3> {};

/// An array of `vec2`.
struct VertexAttribArray_2f : VertexAttribArrayOf<vec2, 2> {};

} // namespace orvex
