#include "fuzz/support/bytes.h"

#include <climits>
#include <cstring>
#include <iterator>
#include <limits>

namespace orvex_fuzz {

unsigned int Bytes::byte() {
    if (left == 0)
        return 0;
    --left;
    return *data++;
}

unsigned int Bytes::below(unsigned int bound) {
    const unsigned int low = byte();
    return (bound > 256 ? low + 256 * byte() : low) % bound;
}

int Bytes::integer() {
    static constexpr int ends[] = {INT_MIN, INT_MIN + 1, -2, -1, 255, 256, 1000, INT_MAX};
    const unsigned int first = byte();
    if (counts_are_small)
        return static_cast<int>(first % 18) - 1;
    if (first < 240)
        return static_cast<int>(first % 40);
    return ends[first % 8];
}

unsigned long Bytes::size() {
    static constexpr unsigned long ends[] = {
        4097,          65537,    1ul << 32, 1ul << 60, ULONG_MAX / 96 + 2, ULONG_MAX / 2 + 1,
        ULONG_MAX - 1, ULONG_MAX};
    const unsigned int first = byte();
    if (counts_are_small)
        return first % 17;
    if (first < 240)
        return first % 40;
    return ends[first % 8];
}

double Bytes::real() {
    using Limits = std::numeric_limits<double>;
    static constexpr double ends[] = {0.0,
                                      -0.0,
                                      1e-40,
                                      1e-20,
                                      1e20,
                                      3e38,
                                      -3e38,
                                      1e300,
                                      -1e300,
                                      1e10,
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::quiet_NaN(),
                                      -1.0,
                                      1.0,
                                      0.5};
    const unsigned int first = byte();
    if (first < 224)
        return (static_cast<int>(first) - 96) / 16.0;
    return ends[first % 16];
}

const char* Bytes::text() {
    static constexpr const char* known[] = {nullptr,
                                            "",
                                            "a",
                                            "tex0",
                                            "cubemap",
                                            "orvex_Position",
                                            "orvex_ModelViewProjectionMatrix",
                                            "orvex_ViewMatrix",
                                            "block",
                                            "no such name",
                                            "/nonexistent/file.obj",
                                            "/dev/null",
                                            "%s%n%d",
                                            "127.0.0.1"};
    constexpr unsigned int num_known = std::size(known);
    const unsigned int choice = below(num_known + 4);
    if (choice < num_known)
        return known[choice];
    if (choice == num_known)
        return texts.emplace_back(300, 'x').c_str();
    std::string text;
    for (unsigned int count = below(24); count > 0; --count)
        text += static_cast<char>(byte());
    return texts.emplace_back(text).c_str();
}

} // namespace orvex_fuzz
