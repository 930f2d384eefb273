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

} // namespace orvex
