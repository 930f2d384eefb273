#pragma once

/// @file
/// What a process and its current context hold, looked at again and again: what is leaked makes
/// later looks find more than earlier ones.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include <malloc.h>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

/// Looks, and what they found.
class Holdings {
public:
    /// What it keeps itself is taken at once.
    Holdings() {
        looks.reserve(most_looks);
        blocks.reserve(most_looks);
    }
    /// Looks at the context that is current, and at the process.
    void look() {
        if (looks.size() == most_looks)
            return;
        std::array<long, kinds> found = {};
        for (GLuint id = 1; id < most_names; ++id) {
            found[0] += glIsBuffer(id);
            found[1] += glIsTexture(id);
            found[2] += glIsVertexArray(id);
            found[3] += glIsFramebuffer(id);
            found[4] += glIsRenderbuffer(id);
            found[5] += glIsProgram(id);
            found[6] += glIsShader(id);
        }
        found[7] = entries("/proc/self/fd");
        found[8] = entries("/proc/self/task");
        looks.push_back(found);
        blocks.push_back(static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd));
    }

    /// What the later half of the looks found more of than the earlier one, and of the process what
    /// grew all the time; empty for nothing. Memory is told of where there were looks enough to see
    /// its slope.
    std::string leaks() const {
        std::string text;
        for (std::size_t kind = 0; kind < kinds; ++kind)
            if (kind < kinds_of_context ? peak(kind, false) < peak(kind, true) : grows(kind))
                text += std::string(names[kind]) + " were " + std::to_string(peak(kind, false)) +
                        " and became " + std::to_string(peak(kind, true)) + "; ";
        if (looks.size() >= looks_for_a_slope && slope() > most_bytes)
            text += "memory grows by " + std::to_string(slope()) + " bytes a look; ";
        return text;
    }

    /// The figures, for those who run it for long.
    std::string text() const {
        std::string result = std::to_string(looks.size()) + " looks:";
        for (std::size_t kind = 0; kind < kinds; ++kind)
            result += " " + std::to_string(peak(kind, false)) + "/" +
                      std::to_string(peak(kind, true)) + " " + names[kind] + ",";
        return result + " " + std::to_string(slope()) + " bytes a look";
    }

private:
    static constexpr std::size_t kinds = 9, kinds_of_context = 7;
    static constexpr const char* names[kinds] = {"buffers",      "textures",      "vertex arrays",
                                                 "framebuffers", "renderbuffers", "programs",
                                                 "shaders",      "descriptors",   "threads"};
    static constexpr std::size_t most_looks = 20000;
    /// A driver gives names that are free again only after all others.
    static constexpr GLuint most_names = 20000;
    static constexpr std::size_t looks_for_a_slope = 500;
    /// A toolkit's own lists and caches grow by less; the smallest picture is larger by far.
    static constexpr double most_bytes = 512.0;

    std::vector<std::array<long, kinds>> looks;
    std::vector<double> blocks; ///< bytes that are taken

    static long entries(const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder), {});
    }

    /// The most of a kind in a half of the looks.
    long peak(std::size_t kind, bool later) const {
        long most = 0;
        const std::size_t half = looks.size() / 2;
        for (std::size_t i = later ? half : 0; i < (later ? looks.size() : half); ++i)
            most = std::max(most, looks[i][kind]);
        return most;
    }

    /// Whether each quarter of the looks found more than the one before, at the least. A driver's
    /// thread opens files for as long as it writes what was compiled, and toolkits begin threads,
    /// with descriptors, once, when they find time for it; what is leaked grows on and on.
    bool grows(std::size_t kind) const {
        std::array<long, 4> fewest;
        fewest.fill(std::numeric_limits<long>::max());
        for (std::size_t i = 0; i < looks.size(); ++i) {
            long& least = fewest[i * fewest.size() / looks.size()];
            least = std::min(least, looks[i][kind]);
        }
        return looks.size() >= fewest.size() &&
               std::ranges::adjacent_find(fewest, std::ranges::greater_equal()) == fewest.end();
    }

    /// Of the straight line nearest to the later three quarters, in bytes a look.
    double slope() const {
        const std::size_t first = blocks.size() / 4;
        const double middle = static_cast<double>(first + blocks.size() - 1) / 2.0;
        double products = 0.0;
        double squares = 0.0;
        for (std::size_t i = first; i < blocks.size(); ++i) {
            const double away = static_cast<double>(i) - middle;
            products += away * blocks[i];
            squares += away * away;
        }
        return squares > 0.0 ? products / squares : 0.0;
    }
};

} // namespace orvex_test
