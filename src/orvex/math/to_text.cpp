#include "orvex/math/to_text.h"

#include <ostream>

#include "orvex/math/mat4.h"
#include "orvex/math/mat4d.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec3u8.h"
#include "orvex/math/vec4.h"
#include "orvex/math/vec4d.h"
#include "orvex/math/vec4i.h"
#include "orvex/math/vec4u8.h"

namespace orvex {

namespace {

/// A byte is a number here, not a character.
int as_number(unsigned char byte) {
    return byte;
}

template<class Number>
const Number& as_number(const Number& number) {
    return number;
}

template<class... Components>
std::ostream& write(std::ostream& out, const Components&... components) {
    const char* before = "(";
    ((out << before << as_number(components), before = ", "), ...);
    return out << ')';
}

template<class Matrix>
std::ostream& write_rows(std::ostream& out, const Matrix& matrix) {
    for (int row = 0; row < 4; ++row) {
        out << (row == 0 ? "(" : ", ");
        write(out, matrix.m[row], matrix.m[4 + row], matrix.m[8 + row], matrix.m[12 + row]);
    }
    return out << ')';
}

} // namespace

std::ostream& operator<<(std::ostream& out, const vec2& v) {
    return write(out, v.x, v.y);
}

std::ostream& operator<<(std::ostream& out, const vec3& v) {
    return write(out, v.x, v.y, v.z);
}

std::ostream& operator<<(std::ostream& out, const vec4& v) {
    return write(out, v.x, v.y, v.z, v.w);
}

std::ostream& operator<<(std::ostream& out, const vec3u8& v) {
    return write(out, v.x, v.y, v.z);
}

std::ostream& operator<<(std::ostream& out, const vec4u8& v) {
    return write(out, v.x, v.y, v.z, v.w);
}

std::ostream& operator<<(std::ostream& out, const vec4i& v) {
    return write(out, v.x, v.y, v.z, v.w);
}

std::ostream& operator<<(std::ostream& out, const vec4d& v) {
    return write(out, v.x, v.y, v.z, v.w);
}

std::ostream& operator<<(std::ostream& out, const quat& q) {
    return write(out, q.x, q.y, q.z, q.w);
}

std::ostream& operator<<(std::ostream& out, const mat4& m) {
    return write_rows(out, m);
}

std::ostream& operator<<(std::ostream& out, const mat4d& m) {
    return write_rows(out, m);
}

} // namespace orvex
