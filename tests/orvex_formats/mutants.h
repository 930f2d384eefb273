#pragma once

/// @file
/// Files that are nearly right.

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex_formats/private/input_file.h"
#include "orvex_formats/private/normals.h"
#include "orvex_formats/private/refusal.h"
#include "tests/orvex_formats/check_draft.h"

namespace orvex_test {

/// The same mutants of a file, by their numbers: bytes changed, numbers of four bytes replaced,
/// digits of a text replaced, the end cut off, a piece doubled.
inline std::vector<unsigned char> mutant_of(std::vector<unsigned char> bytes, unsigned number) {
    std::minstd_rand random(number + 1);
    const auto below = [&](std::size_t end) { return random() % std::max<std::size_t>(end, 1); };
    const std::size_t num_changes = 1 + below(4);
    for (std::size_t change = 0; change < num_changes && bytes.size() > 4; ++change) {
        const std::size_t place = below(bytes.size() - 4);
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(place);
        switch (below(6)) {
        case 0:
            *at ^= static_cast<unsigned char>(1u << below(8));
            break;
        case 1:
            *at = static_cast<unsigned char>(below(256));
            break;
        case 2: {
            const unsigned char ends[] = {0x00, 0xff, 0x7f, 0x80};
            std::fill(at, at + 4, ends[below(4)]);
            break;
        }
        case 3: {
            const std::string digits = "0123456789-.e \n";
            *at = static_cast<unsigned char>(digits[below(digits.size())]);
            break;
        }
        case 4:
            bytes.resize(place);
            break;
        default:
            const std::vector<unsigned char> piece(at, bytes.end());
            bytes.insert(at, piece.begin(),
                         piece.begin() + static_cast<std::ptrdiff_t>(below(piece.size())));
        }
    }
    return bytes;
}

/// Reads files: each is refused with a reason, or gives a draft that holds together. There are such
/// and such.
inline void read_each(orvex::formats::Draft (*reader)(const orvex::formats::InputFile&),
                      const std::vector<std::vector<unsigned char>>& files) {
    using namespace orvex::formats;
    unsigned num_read = 0, num_refused = 0;
    for (const std::vector<unsigned char>& file : files) {
        try {
            Draft draft = reader(InputFile(file));
            for (Surface& surface : draft.surfaces)
                add_normals(surface);
            ASSERT_TRUE(holds_together(draft)) << "file " << num_read + num_refused;
            ++num_read;
        } catch (const orvex::formats::Refusal& refusal) {
            ASSERT_STRNE(refusal.what(), "") << "file " << num_read + num_refused;
            ++num_refused;
        }
    }
    EXPECT_GT(num_read, 0u);
    EXPECT_GT(num_refused, 0u);
}

/// Reads a thousand mutants of each file.
inline void read_mutants(orvex::formats::Draft (*reader)(const orvex::formats::InputFile&),
                         const std::vector<std::vector<unsigned char>>& files) {
    std::vector<std::vector<unsigned char>> mutants;
    for (const std::vector<unsigned char>& file : files)
        for (unsigned number = 0; number < 1000; ++number)
            mutants.push_back(mutant_of(file, number));
    read_each(reader, mutants);
}

} // namespace orvex_test
