#include "orvex/math/mat4.h"

#include "orvex/math/private/lanes.h"

namespace orvex {

// The 16 cofactors, a row of the result at a time. With one column of the matrix left out and the
// other three called a, b and c, lane r holds `det3x3` of them without row r: its products and
// differences are rounded one by one in that function's order, so every lane is its result to the
// bit. A `det2x2` of two columns serves two of the four rows.

namespace {

/// A column without row r in lane r: first, second and third of what is left.
struct MinorRows {
    floats4 first, second, third;

    explicit MinorRows(floats4 all)
        : first(__builtin_shufflevector(all, all, 1, 0, 0, 0))
        , second(__builtin_shufflevector(all, all, 2, 2, 1, 1))
        , third(__builtin_shufflevector(all, all, 3, 3, 3, 2)) {}
};

/// `det2x2` of the second and third elements of two columns.
floats4 det2x2_lanes(const MinorRows& b, const MinorRows& c) {
    return b.second * c.third - c.second * b.third;
}

/// `det3x3` of three columns, given the three `det2x2` of its expansion.
floats4 det3x3_lanes(const MinorRows& a, floats4 det_bc, const MinorRows& b, floats4 det_ac,
                     const MinorRows& c, floats4 det_ab) {
    return a.first * det_bc - b.first * det_ac + c.first * det_ab;
}

} // namespace

mat4& mat4::inverse() noexcept {
    invert_to(*this);
    return *this;
}

void mat4::invert_to(mat4& result) const noexcept {
    const floats4 column0 = lanes::load<floats4>(m);
    const MinorRows c0(column0), c1(lanes::load<floats4>(m + 4)), c2(lanes::load<floats4>(m + 8)),
        c3(lanes::load<floats4>(m + 12));
    const floats4 det01 = det2x2_lanes(c0, c1);
    const floats4 det02 = det2x2_lanes(c0, c2);
    const floats4 det03 = det2x2_lanes(c0, c3);
    const floats4 det12 = det2x2_lanes(c1, c2);
    const floats4 det13 = det2x2_lanes(c1, c3);
    const floats4 det23 = det2x2_lanes(c2, c3);

    const floats4 minors0 = det3x3_lanes(c1, det23, c2, det13, c3, det12);
    const floats4 minors1 = det3x3_lanes(c0, det23, c2, det03, c3, det02);
    const floats4 minors2 = det3x3_lanes(c0, det13, c1, det03, c3, det01);
    const floats4 minors3 = det3x3_lanes(c0, det12, c1, det02, c2, det01);

    // Every second cofactor is the negated minor. A sign is exact wherever it is applied: here in
    // the sum, and below in the factor.
    const floats4 terms = column0 * minors0;
    const float det = terms[0] - terms[1] + terms[2] - terms[3];
    if (det == 0.0f) {
        result.identity();
        return;
    }
    const float scale = 1.0f / det;
    const floats4 even = {scale, -scale, scale, -scale};
    const floats4 odd = -even;
    floats4 rows[4] = {minors0 * even, minors1 * odd, minors2 * even, minors3 * odd};
    lanes::transpose(rows[0], rows[1], rows[2], rows[3]);
    for (int i = 0; i < 4; ++i)
        lanes::store(result.m + i * 4, rows[i]);
}

float MINOR(const mat4& m, int r0, int r1, int r2, int c0, int c1, int c2) noexcept {
    const int indices[] = {r0, r1, r2, c0, c1, c2};
    for (const int index : indices)
        if (index < 0 || index > 3)
            return 0.0f;
    const float *a = m.m + r0 * 4, *b = m.m + r1 * 4, *c = m.m + r2 * 4;
    return det3x3(a[c0], a[c1], a[c2], b[c0], b[c1], b[c2], c[c0], c[c1], c[c2]);
}

// In place on purpose, one element after another: from the second on, a minor sees the results
// already stored. Element i * 4 + j takes the rows other than j and the columns other than i.
mat4& mat4::adjoint() noexcept {
    static constexpr int others[4][3] = {{1, 2, 3}, {0, 2, 3}, {0, 1, 3}, {0, 1, 2}};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            const int *r = others[j], *c = others[i];
            const float minor = MINOR(*this, r[0], r[1], r[2], c[0], c[1], c[2]);
            m[i * 4 + j] = (i + j) % 2 ? -minor : minor;
        }
    }
    return *this;
}

} // namespace orvex
