#pragma once

/// @file
/// Records of the caller's, which may be of an older header or of a newer one.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "orvex_c/private/refusal.h"

namespace orvex::c {

/// The size that a record tells. Larger ones than any header will have are numbers from nowhere.
inline std::size_t size_told_by(const void* record, const char* name) {
    constexpr std::size_t largest = 65536;
    std::size_t size = 0;
    std::memcpy(&size, record, sizeof(size));
    if (size < sizeof(size) || size > largest)
        refuse_argument((std::string(name) + "->size").c_str(), std::to_string(size),
                        "set it to the sizeof of the record");
    return size;
}

/// A record as this library knows it: what an older one hasn't got is 0.
/// @param given  null for one of zeros
template<class Record>
Record record_in(const Record* given, const char* name) {
    Record own{};
    if (!given)
        return own;
    const std::size_t size = size_told_by(given, name);
    std::memcpy(&own, given, std::min(size, sizeof(own)));
    const auto* const bytes = reinterpret_cast<const unsigned char*>(given);
    for (std::size_t i = sizeof(own); i < size; ++i)
        if (bytes[i] != 0)
            refuse(ORVEX_ERROR_ARGUMENT, std::string(name) + " asks at byte " + std::to_string(i) +
                                             " for what version " + orvex_version() +
                                             " of the library doesn't know");
    own.size = sizeof(own);
    return own;
}

/// Hands a record out, as far as the caller's goes, and leaves 0 behind it.
template<class Record>
void record_out(const Record& own, Record* to, const char* name) {
    require_pointer(to, name);
    const std::size_t size = size_told_by(to, name);
    auto* const bytes = reinterpret_cast<unsigned char*>(to);
    const std::size_t known = std::min(size, sizeof(own));
    std::memcpy(bytes + sizeof(size), reinterpret_cast<const unsigned char*>(&own) + sizeof(size),
                known - sizeof(size));
    std::fill(bytes + known, bytes + size, static_cast<unsigned char>(0));
}

inline void require_reserved(std::int32_t number, const char* name) {
    if (number != 0)
        refuse_argument((std::string(name) + "->reserved").c_str(), std::to_string(number),
                        "it is 0");
}

} // namespace orvex::c
