#include "orvex_formats/import/private/answer_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "orvex_formats/import/private/answer_layout.h"
#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/importer_protocol.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

/// The way of `answer_layout.h` that reads.
class ReadWay {
public:
    explicit ReadWay(const InputFile& answer)
        : stream(answer, sizeof(AnswerHead)) {}

    void number(float& value, float least, float most) {
        value = take<float>();
        check(value, least, most);
    }

    template<class Whole>
    void choice(Whole& value, std::uint32_t count) {
        const auto told = take<std::uint32_t>();
        if (told >= count)
            refuse_answer("a number that stands for nothing");
        value = static_cast<Whole>(told);
    }

    void flag(bool& value) {
        std::uint32_t told = 0;
        choice(told, 2);
        value = told != 0;
    }

    void text(std::string& text) {
        constexpr std::size_t longest = 4096;
        const std::size_t size = take_count(1);
        if (size > longest)
            refuse_answer("a name that is longer than any");
        text.assign(reinterpret_cast<const char*>(stream.take(size)), size);
        if (text.find('\0') != text.npos)
            refuse_answer("a name with a zero in it");
    }

    template<class Value>
    void list(std::vector<Value>& list, std::size_t most) {
        const std::size_t count = take_count(sizeof(std::uint32_t));
        if (count > most)
            refuse_answer("a list that is longer than any that is read");
        list.resize(count);
    }

    void bytes(std::vector<unsigned char>& bytes) {
        bytes.resize(take_count(1));
        in_pieces(bytes.size(), 1, [&](std::size_t first, const unsigned char* from,
                                       std::size_t count) {
            std::copy_n(from, count, bytes.begin() + static_cast<std::ptrdiff_t>(first));
        });
    }

    template<class Vector>
    void values(std::vector<Vector>& vectors, float least, float most) {
        vectors.resize(take_count(sizeof(Vector)));
        if (vectors.empty() || vectors.size() >= UINT32_MAX)
            refuse_answer("no vertices, or more than any that are read");
        read_values(vectors, least, most);
    }

    template<class Vector>
    void values_or_none(std::vector<Vector>& vectors, std::size_t count, float least, float most) {
        vectors.resize(take_count(sizeof(Vector)));
        if (!vectors.empty() && vectors.size() != count)
            refuse_answer("a list that doesn't fit that of the vertices");
        read_values(vectors, least, most);
    }

    void triangles(std::vector<Triangle>& triangles, std::size_t num_vertices) {
        triangles.resize(take_count(sizeof(Triangle)));
        if (triangles.empty() || triangles.size() > UINT32_MAX / 3)
            refuse_answer("no triangles, or more than any that are read");
        in_pieces(triangles.size(), sizeof(Triangle), [&](std::size_t first,
                                                          const unsigned char* from,
                                                          std::size_t count) {
            std::memcpy(triangles[first].data(), from, count * sizeof(Triangle));
            for (std::size_t i = first; i < first + count; ++i)
                for (const std::uint32_t corner : triangles[i])
                    if (corner >= num_vertices)
                        refuse_answer("a corner beyond the vertices");
        });
    }

    void material(std::uint32_t& material, std::size_t num_materials) {
        material = take<std::uint32_t>();
        if (material != no_material && material >= num_materials)
            refuse_answer("a material beyond their list");
    }

    void ends(std::size_t count) const {
        if (count % 2 != 0)
            refuse_answer("a line without an end");
    }

    void finish() {
        if (!stream.is_at_end())
            refuse_answer("more than a model");
    }

private:
    [[noreturn]] void refuse_answer(const char* what) const {
        refuse("the importer's answer can't be right: byte %llu: %s",
               static_cast<unsigned long long>(stream.place()), what);
    }

    void check(float value, float least, float most) const {
        if (!std::isfinite(value))
            refuse_answer("a number that isn't finite");
        if (value < least || value > most)
            refuse_answer("a number beyond its range");
    }

    const unsigned char* take_bytes(std::size_t size) {
        if (stream.left() < size)
            refuse_answer("it is cut off");
        return stream.take(size);
    }

    template<class Number>
    Number take() {
        return number_at<Number>(take_bytes(sizeof(Number)));
    }

    /// How many follow that have so many bytes each.
    std::size_t take_count(std::size_t size) {
        const auto count = take<std::uint64_t>();
        if (count > stream.left() / size)
            refuse_answer("it is cut off");
        return static_cast<std::size_t>(count);
    }

    /// Calls with the place of the first one, the bytes, and how many there are of them.
    template<class Use>
    void in_pieces(std::size_t count, std::size_t size, Use use) {
        constexpr std::size_t at_once = 4096;
        for (std::size_t first = 0; first < count; first += at_once) {
            const std::size_t piece = std::min(at_once, count - first);
            use(first, take_bytes(piece * size), piece);
        }
    }

    template<class Vector>
    void read_values(std::vector<Vector>& vectors, float least, float most) {
        constexpr std::size_t width = sizeof(Vector) / sizeof(float);
        in_pieces(vectors.size(), sizeof(Vector), [&](std::size_t first, const unsigned char* from,
                                                      std::size_t count) {
            for (std::size_t i = 0; i < count * width; ++i)
                check(number_at<float>(from + i * sizeof(float)), least, most);
            std::memcpy(static_cast<void*>(&vectors[first]), from, count * sizeof(Vector));
        });
    }

    ByteStream stream;
};

} // namespace

Draft read_answer(const InputFile& answer) {
    Draft draft;
    ReadWay way(answer);
    pass_draft(way, draft);
    way.finish();
    return draft;
}

} // namespace orvex::formats
