#pragma once

#include "orvex/geometry/rays/private/face_filter.h"

namespace orvex {

/// `SkipMissed` for processors that have AVX2, and for those with AVX-512 (F and DQ). Only builds
/// for x86 have them.
unsigned long skip_missed_u16_avx2(const FaceProbe& probe, const FaceU16* faces,
                                   unsigned long begin, unsigned long end);
unsigned long skip_missed_u32_avx2(const FaceProbe& probe, const FaceU32* faces,
                                   unsigned long begin, unsigned long end);
unsigned long skip_missed_u16_avx512(const FaceProbe& probe, const FaceU16* faces,
                                     unsigned long begin, unsigned long end);
unsigned long skip_missed_u32_avx512(const FaceProbe& probe, const FaceU32* faces,
                                     unsigned long begin, unsigned long end);

} // namespace orvex
