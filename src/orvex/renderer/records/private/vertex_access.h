#pragma once

/// @file
/// How the mesh stores reach and convert one attribute of one vertex, the same for every format.

#include <exception>
#include <memory>
#include <new>

#include "orvex/math/aligned_new.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/platform/private/constant_array.h"
#include "orvex/platform/private/large_pages.h"
#include "orvex/renderer/records/vertex_attrib_array.h"

namespace orvex::vertex_access {

inline void assign(vec4& to, const vec4& value) {
    to = value;
}

inline void assign(vec4& to, const vec3& value) {
    to = value;
}

inline void assign(vec3& to, const vec3& value) {
    to = value;
}

inline void assign(vec3& to, const vec4& value) {
    to = value.get_vec3();
}

inline void assign(vec2& to, const vec4& value) {
    to.set(value.x, value.y);
}

inline const vec4& widen(const vec4& value) {
    return value;
}

inline vec4 widen(const vec3& value) {
    return vec4(value);
}

inline vec4 widen(const vec2& value) {
    vec4 wide;
    wide = value;
    return wide;
}

inline vec3 without_w(const vec4& value) {
    return value.get_vec3();
}

inline const vec3& without_w(const vec3& value) {
    return value;
}

/// The stored attribute of vertex i in the layout in force; null out of range or without storage.
template<class Store, class Array, class Record, class Field>
Field* stored(Store& store, const Array& array, Field Record::*field, unsigned long i) {
    if (i >= store.num_vertices)
        return nullptr;
    if (store.separate_vertex_arrays)
        return array.data ? &array.data[i] : nullptr;
    return store.vertices ? &(store.vertices[i].*field) : nullptr;
}

/// Element i of a separate array, widened; the default without storage.
template<class Array>
vec4 element(const Array& array, unsigned long i) {
    return array.data ? vec4(widen(array.data[i])) : vec4();
}

template<class Field>
vec4 read_vec4(const Field* field) {
    return field ? vec4(widen(*field)) : vec4();
}

template<class Field>
vec3 read_vec3(const Field* field) {
    return field ? vec3(without_w(*field)) : vec3();
}

template<class Field, class Value>
void write(Field* field, const Value& value) {
    if (field)
        assign(*field, value);
}

/// An aligned block of `count` elements, or `std::bad_alloc` where the allocator gives null.
template<class Element>
Element* aligned(Element* (*allocate)(unsigned long, int, unsigned char**), unsigned long count,
                 int alignment, unsigned char** raw) {
    Element* block = allocate(count, alignment, raw);
    if (!block && count > 0)
        throw std::bad_alloc();
    return block;
}

/// Runs `work`, which allocates the arrays of a store. What it made before memory ran out stays in
/// the store, which frees it at its end or at the next allocation.
/// @param report  takes the text of what ended the work, null for what has no text
template<class Work, class Report>
bool allocate_or_report(Work&& work, Report&& report) {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        report(error.what());
    } catch (...) {
        report(nullptr);
    }
    return false;
}

/// Allocates the interleaved records of a store, all default.
template<class Store, class Record>
void allocate_records(Store& store, unsigned long count,
                      Record* (*allocate)(unsigned long, int, unsigned char**)) {
    if (store.alignment < 1) {
        store.vertices = new_large_array<Record>(count);
        return;
    }
    store.vertices = aligned(allocate, count, store.alignment, &store.raw_vertices);
    std::uninitialized_default_construct_n(store.vertices, count);
}

/// Allocates one separate array, all default.
template<class Array, class Element>
void allocate_array(Array& array, unsigned long count, int alignment,
                    Element* (*allocate)(unsigned long, int, unsigned char**)) {
    array.data = alignment < 1 ? new_large_array<Element>(count)
                               : aligned(allocate, count, alignment, &array.raw_ptr);
    array.num_elements = count;
}

/// The same for an array that many a host never writes: it has memory where somebody does.
inline void allocate_optional_array(VertexAttribArray& array, unsigned long count, int alignment) {
    if (alignment >= 1)
        return allocate_array(array, count, alignment, AlignedNew_vec4);
    array.data = new_constant_array<vec4>(count, vec4());
    array.num_elements = count;
}

/// Frees the interleaved records of a store by the road they came. A packed store shares
/// `raw_vertices` with its base, so a store without records leaves it alone.
template<class Store, class Record>
void free_records(Store& store, void (*aligned_delete)(Record**, unsigned long, unsigned char**)) {
    if (!store.vertices)
        return;
    if (store.raw_vertices)
        aligned_delete(&store.vertices, store.num_vertices, &store.raw_vertices);
    else
        delete[] store.vertices;
    store.vertices = nullptr;
}

/// Frees an array by the road it came, and forgets it.
template<class Array, class Element>
void free_array(Array& array, void (*aligned_delete)(Element**, unsigned long, unsigned char**)) {
    if (array.raw_ptr)
        aligned_delete(&array.data, array.num_elements, &array.raw_ptr);
    else
        delete_spread(array.data, array.num_elements);
    array.reset();
}

} // namespace orvex::vertex_access
