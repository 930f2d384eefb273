// Four letters are three bytes. Where the processor has wide registers, 32 letters are decoded at
// once: models of today carry megabytes of them.

#include "orvex_formats/gltf/private/base64.h"

#include <array>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace orvex::formats {

namespace {

constexpr std::uint8_t no_letter = 0x80;

constexpr std::array<std::uint8_t, 256> make_values() {
    std::array<std::uint8_t, 256> values{};
    for (std::uint8_t& value : values)
        value = no_letter;
    constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t i = 0; i < letters.size(); ++i)
        values[static_cast<unsigned char>(letters[i])] = static_cast<std::uint8_t>(i);
    return values;
}

constexpr std::array<std::uint8_t, 256> values = make_values();

std::uint32_t value_of(char letter) {
    return values[static_cast<unsigned char>(letter)];
}

#if defined(__x86_64__)

/// The bytes of a register that lie between two letters, both included, as a mask.
[[gnu::target("avx2")]] __m256i lie_between(__m256i letters, char first, char last) {
    return _mm256_and_si256(
        _mm256_cmpgt_epi8(letters, _mm256_set1_epi8(static_cast<char>(first - 1))),
        _mm256_cmpgt_epi8(_mm256_set1_epi8(static_cast<char>(last + 1)), letters));
}

/// What each letter is worth. @return false for what is no letter
[[gnu::target("avx2")]] bool evaluate(__m256i letters, __m256i& worth) {
    struct Range {
        char first, last, value;
    };
    constexpr Range ranges[] = {
        {'A', 'Z', 0}, {'a', 'z', 26}, {'0', '9', 52}, {'+', '+', 62}, {'/', '/', 63}};
    __m256i known = _mm256_setzero_si256(), shift = _mm256_setzero_si256();
    for (const Range& range : ranges) {
        const __m256i mask = lie_between(letters, range.first, range.last);
        const __m256i by = _mm256_set1_epi8(static_cast<char>(range.value - range.first));
        known = _mm256_or_si256(known, mask);
        shift = _mm256_or_si256(shift, _mm256_and_si256(mask, by));
    }
    worth = _mm256_add_epi8(letters, shift);
    return _mm256_movemask_epi8(known) == -1;
}

/// Decodes as much as whole registers hold, until a letter is none.
/// @return how many letters, a multiple of 4
[[gnu::target("avx2")]] std::size_t decode_wide(std::string_view text, unsigned char* to) {
    // Six bits of each become twelve, then 24, whose three bytes go to the front.
    const __m256i pairs = _mm256_set1_epi32(0x01400140);
    const __m256i fours = _mm256_set1_epi32(0x00011000);
    const __m256i front = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,
                                           2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m256i together = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    std::size_t next = 0;
    // A store is 32 bytes wide, 24 of which count: there is room for it while more letters follow.
    for (; text.size() - next >= 64; next += 32, to += 24) {
        const __m256i letters =
            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text.data() + next));
        __m256i worth;
        if (!evaluate(letters, worth))
            break;
        const __m256i whole = _mm256_madd_epi16(_mm256_maddubs_epi16(worth, pairs), fours);
        const __m256i bytes =
            _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(whole, front), together);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), bytes);
    }
    return next;
}

std::size_t decode_at_once(std::string_view text, unsigned char* to) {
    return __builtin_cpu_supports("avx2") ? decode_wide(text, to) : 0;
}

#else

std::size_t decode_at_once(std::string_view, unsigned char*) {
    return 0;
}

#endif

/// Decodes the last two or three letters. @return whether they are such
bool decode_rest(std::string_view rest, unsigned char* to) {
    const std::uint32_t bits = value_of(rest[0]) << 18 | value_of(rest[1]) << 12 |
                               (rest.size() == 3 ? value_of(rest[2]) << 6 : 0);
    for (const char letter : rest)
        if (value_of(letter) == no_letter)
            return false;
    to[0] = static_cast<unsigned char>(bits >> 16);
    if (rest.size() == 3)
        to[1] = static_cast<unsigned char>(bits >> 8);
    return true;
}

} // namespace

std::size_t decode_base64(std::string_view text, std::vector<unsigned char>& bytes) {
    const std::size_t whole_size = text.size();
    for (int i = 0; i < 2 && !text.empty() && whole_size % 4 == 0 && text.back() == '='; ++i)
        text.remove_suffix(1);
    const std::size_t left_over = text.size() % 4;
    if (left_over == 1)
        return text.size() - 1;
    const std::size_t before = bytes.size();
    bytes.resize(before + text.size() / 4 * 3 + (left_over == 0 ? 0 : left_over - 1));
    unsigned char* const to = bytes.data() + before;

    std::size_t next = decode_at_once(text, to);
    for (; text.size() - next >= 4; next += 4) {
        const std::uint32_t a = value_of(text[next]), b = value_of(text[next + 1]),
                            c = value_of(text[next + 2]), d = value_of(text[next + 3]);
        if (((a | b | c | d) & no_letter) != 0)
            return next;
        const std::uint32_t bits = a << 18 | b << 12 | c << 6 | d;
        unsigned char* const three = to + next / 4 * 3;
        three[0] = static_cast<unsigned char>(bits >> 16);
        three[1] = static_cast<unsigned char>(bits >> 8);
        three[2] = static_cast<unsigned char>(bits);
    }
    if (left_over != 0 && !decode_rest(text.substr(next), to + next / 4 * 3))
        return next;
    return whole_size;
}

} // namespace orvex::formats
