#include "orvex_kit/private/npy_writer.h"

#include <bit>
#include <string>
#include <string_view>

namespace orvex::kit {

namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they lie");

std::string_view descr_of(Sample sample) {
    switch (sample) {
    case Sample::u8:
        return "|u1";
    case Sample::u16:
        return "<u2";
    case Sample::f32:
        return "<f4";
    case Sample::i32:
        return "<i4";
    }
    return "";
}

/// Magic, version 1.0, the length of what follows, and a dictionary that is filled up with spaces
/// to a multiple of 64 bytes and ends its line.
std::string header_of(const Picture& picture) {
    std::string shape = std::to_string(picture.height()) + ", " + std::to_string(picture.width());
    if (picture.channels() > 1)
        shape += ", " + std::to_string(picture.channels());
    std::string text = "{'descr': '" + std::string(descr_of(picture.sample())) +
                       "', 'fortran_order': False, 'shape': (" + shape + "), }";
    constexpr std::size_t before = 10, alignment = 64;
    const std::size_t size = (before + text.size() + 1 + alignment - 1) / alignment * alignment;
    text.resize(size - before - 1, ' ');
    text += '\n';
    std::string header("\x93NUMPY\x01\x00", 8);
    header += static_cast<char>(text.size() & 0xff);
    header += static_cast<char>(text.size() >> 8);
    return header + text;
}

} // namespace

Outcome write_npy(const Picture& picture, const std::string& path) {
    Output output(path);
    Outcome outcome = output.begin();
    if (outcome)
        outcome = output.put(header_of(picture));
    if (outcome)
        outcome = output.put(picture.row_data(0), picture.size_bytes());
    return outcome ? output.finish() : outcome;
}

} // namespace orvex::kit
