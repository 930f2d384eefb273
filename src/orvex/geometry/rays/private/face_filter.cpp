#include "orvex/geometry/rays/private/face_filter.h"

#include <array>

#include "orvex/geometry/rays/private/face_filter_x86.h"
#include "orvex/geometry/rays/private/face_lanes.h"

namespace orvex {

namespace {

/// Room that needs no memory, as a ray may be the first thing that happens when there is none.
struct KnownFilters {
    std::array<FaceFilter, 3> all{};
    std::size_t count = 0;

    KnownFilters() {
#if defined(ORVEX_FACE_FILTERS_X86)
        if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq"))
            all[count++] = {skip_missed_u16_avx512, skip_missed_u32_avx512};
        if (__builtin_cpu_supports("avx2"))
            all[count++] = {skip_missed_u16_avx2, skip_missed_u32_avx2};
#endif
        all[count++] = {face_lanes::skip<floats4, FaceU16>, face_lanes::skip<floats4, FaceU32>};
    }
};

} // namespace

std::span<const FaceFilter> face_filters() {
    static const KnownFilters known;
    return {known.all.data(), known.count};
}

} // namespace orvex
