#include "orvex/renderer/records/vertex.h"

#include "orvex/math/private/aligned_block.h"

namespace orvex {

namespace {

template<class Record>
Record* aligned_records(unsigned long count, int alignment, unsigned char** raw) {
    return static_cast<Record*>(aligned_block_new(count, sizeof(Record), alignment, raw));
}

} // namespace

Vertex* AlignedNew_Vertex(unsigned long count, int alignment, unsigned char** raw) {
    return aligned_records<Vertex>(count, alignment, raw);
}

Vertex_64* AlignedNew_Vertex_64(unsigned long count, int alignment, unsigned char** raw) {
    return aligned_records<Vertex_64>(count, alignment, raw);
}

Vertex_32* AlignedNew_Vertex_32(unsigned long count, int alignment, unsigned char** raw) {
    return aligned_records<Vertex_32>(count, alignment, raw);
}

Vertex_PhysXCloth* AlignedNew_Vertex_PhysXCloth(unsigned long count, int alignment,
                                                unsigned char** raw) {
    return aligned_records<Vertex_PhysXCloth>(count, alignment, raw);
}

void AlignedDelete_Vertex(Vertex** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

void AlignedDelete_Vertex_64(Vertex_64** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

void AlignedDelete_Vertex_32(Vertex_32** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

void AlignedDelete_Vertex_PhysXCloth(Vertex_PhysXCloth** aligned, unsigned long,
                                     unsigned char** raw) {
    aligned_delete(aligned, raw);
}

} // namespace orvex
