#include "orvex_formats/import/private/answer_reader.h"

#include <string>

#include "orvex_formats/import/private/answer_layout.h"
#include "orvex_formats/private/answer_stream.h"
#include "orvex_formats/private/viewpoint.h"

namespace orvex::formats {

namespace {

/// The way of `answer_layout.h` that reads.
class ReadWay {
public:
    explicit ReadWay(const InputFile& answer)
        : stream(answer) {}

    void number(float& value, float least, float most) {
        value = stream.take<float>();
        stream.check(value, least, most);
    }

    template<class Whole>
    void choice(Whole& value, std::uint32_t count) {
        const auto told = stream.take<std::uint32_t>();
        if (told >= count)
            stream.refuse_answer("a number that stands for nothing");
        value = static_cast<Whole>(told);
    }

    void flag(bool& value) {
        std::uint32_t told = 0;
        choice(told, 2);
        value = told != 0;
    }

    void text(std::string& text) { stream.take_text(text); }

    template<class Value>
    void list(std::vector<Value>& list, std::size_t most) {
        const std::size_t count = stream.take_count(sizeof(std::uint32_t));
        if (count > most)
            stream.refuse_answer("a list that is longer than any that is read");
        list.resize(count);
    }

    void bytes(std::vector<unsigned char>& bytes) {
        bytes.resize(stream.take_count(1));
        stream.fill(bytes);
    }

    template<class Vector>
    void values(std::vector<Vector>& vectors, float least, float most) {
        vectors.resize(stream.take_count(sizeof(Vector)));
        if (vectors.empty() || vectors.size() >= UINT32_MAX)
            stream.refuse_answer("no vertices, or more than any that are read");
        stream.fill_with_floats(vectors, least, most);
    }

    template<class Vector>
    void values_or_none(std::vector<Vector>& vectors, std::size_t count, float least, float most) {
        vectors.resize(stream.take_count(sizeof(Vector)));
        if (!vectors.empty() && vectors.size() != count)
            stream.refuse_answer("a list that doesn't fit that of the vertices");
        stream.fill_with_floats(vectors, least, most);
    }

    void triangles(std::vector<Triangle>& triangles, std::size_t num_vertices) {
        triangles.resize(stream.take_count(sizeof(Triangle)));
        if (triangles.empty() || triangles.size() > UINT32_MAX / 3)
            stream.refuse_answer("no triangles, or more than any that are read");
        stream.fill_with_places(triangles, num_vertices);
    }

    void material(std::uint32_t& material, std::size_t num_materials) {
        material = stream.take<std::uint32_t>();
        if (material != no_material && material >= num_materials)
            stream.refuse_answer("a material beyond their list");
    }

    void ends(std::size_t count) const {
        if (count % 2 != 0)
            stream.refuse_answer("a line without an end");
    }

    /// Draws up where it looks once more, which stays as it is but for rounding.
    void sight(Viewpoint& view) const {
        if (!sees_something(view) || !aim(view, view.eye, view.forward, view.up))
            stream.refuse_answer("a camera that sees nothing");
    }

    void finish() const { stream.finish(); }

private:
    AnswerStream stream;
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
