#include "orvex/renderer/records/polyline_data.h"

#include <initializer_list>

#include "orvex/math/aligned_new.h"
#include "orvex/renderer/records/private/vertex_access.h"

namespace orvex {

PolylineData::PolylineData() {
    int location = 0;
    for (VertexAttribArray* attribute : {&position, &color, &normal, &uv0, &uv1, &tangent})
        attribute->attrib_location = location++;
}

namespace {

void free_attributes(VertexAttribArray* attributes, unsigned long count) {
    for (unsigned long i = 0; attributes && i < count; ++i)
        vertex_access::free_array(attributes[i], AlignedDelete_vec4);
    delete[] attributes;
}

} // namespace

PolylineData::~PolylineData() {
    free_vertices();
    free_attributes(user_attribs, num_user_attribs);
}

void PolylineData::free_vertices() {
    vertex_access::free_records(*this, AlignedDelete_Vertex);
}

void PolylineData::inc_ref() {
    ++ref_count;
}

void PolylineData::dec_ref() {
    if (ref_count > 0)
        --ref_count;
}

int PolylineData::get_ref() const {
    return ref_count;
}

Thread* PolylineData::get_thread_ptr() {
    return &thread;
}

Thread* PolylineData::get_thread() {
    return &thread;
}

void PolylineData::update_thread() {
    thread.update();
}

bool PolylineData::check_thread() const {
    return Thread() == thread;
}

} // namespace orvex
