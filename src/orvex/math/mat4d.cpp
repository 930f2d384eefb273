#include "orvex/math/mat4d.h"

#include <algorithm>

namespace orvex {

mat4d& mat4d::operator=(const double* values) noexcept {
    if (values)
        std::copy_n(values, 16, m);
    return *this;
}

mat4d& mat4d::identity() noexcept {
    return *this = mat4d();
}

} // namespace orvex
