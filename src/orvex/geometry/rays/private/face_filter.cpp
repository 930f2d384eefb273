#include "orvex/geometry/rays/private/face_filter.h"

#include "orvex/geometry/rays/private/face_filter_x86.h"
#include "orvex/geometry/rays/private/face_lanes.h"

namespace orvex {

const std::vector<FaceFilter>& face_filters() {
    static const std::vector<FaceFilter> filters = [] {
        std::vector<FaceFilter> found;
#if defined(ORVEX_FACE_FILTERS_X86)
        if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq"))
            found.push_back({skip_missed_u16_avx512, skip_missed_u32_avx512});
        if (__builtin_cpu_supports("avx2"))
            found.push_back({skip_missed_u16_avx2, skip_missed_u32_avx2});
#endif
        found.push_back({face_lanes::skip<floats4, FaceU16>, face_lanes::skip<floats4, FaceU32>});
        return found;
    }();
    return filters;
}

} // namespace orvex
