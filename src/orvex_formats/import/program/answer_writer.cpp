#include "orvex_formats/import/program/answer_writer.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <string>
#include <utility>

#include <unistd.h>

#include "orvex_formats/import/private/answer_layout.h"
#include "orvex_formats/private/importer_protocol.h"

namespace orvex::formats {

// --- The room ---------------------------------------------------------------------------------

AnswerRoom::AnswerRoom(int descriptor, std::uint64_t size)
    : descriptor(descriptor)
    , room(size)
    , place(sizeof(AnswerHead)) {}

void AnswerRoom::add(const void* bytes, std::size_t size) {
    constexpr std::size_t enough = 256u << 10;
    const auto* const first = static_cast<const unsigned char*>(bytes);
    waiting.insert(waiting.end(), first, first + size);
    if (waiting.size() >= enough)
        flush();
}

void AnswerRoom::finish() {
    flush();
    AnswerHead head;
    head.mark = answer_mark;
    head.size = place;
    put(&head, sizeof head, 0);
}

void AnswerRoom::flush() {
    if (place > room || waiting.size() > room - place)
        throw std::runtime_error("the model would be far larger than its file: more than " +
                                 std::to_string(room >> 20) + " MB");
    put(waiting.data(), waiting.size(), place);
    place += waiting.size();
    waiting.clear();
}

void AnswerRoom::put(const void* bytes, std::size_t size, std::uint64_t at) const {
    const auto* next = static_cast<const unsigned char*>(bytes);
    while (size > 0) {
        const ssize_t done = pwrite(descriptor, next, size, static_cast<off_t>(at));
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            throw std::runtime_error("the answer can't be written");
        next += done;
        size -= static_cast<std::size_t>(done);
        at += static_cast<std::uint64_t>(done);
    }
}

// --- A model ----------------------------------------------------------------------------------

namespace {

/// The way of `answer_layout.h` that writes. What a file said beyond a range is brought into it.
class WriteWay {
public:
    explicit WriteWay(AnswerRoom& room)
        : room(room) {}

    void number(float value, float least, float most) {
        room.add_number(std::isfinite(value) ? std::clamp(value, least, most) : least);
    }
    template<class Whole>
    void choice(Whole value, std::uint32_t) {
        room.add_number(static_cast<std::uint32_t>(value));
    }
    void flag(bool value) { choice(value, 2); }
    void text(const std::string& text) {
        constexpr std::size_t longest = 4096;
        const std::size_t size = std::min(std::min(text.size(), text.find('\0')), longest);
        add_count(size);
        room.add(text.data(), size);
    }
    template<class Value>
    void list(std::vector<Value>& list, std::size_t most) {
        if (list.size() > most)
            throw std::runtime_error("the model has more parts than any that is read");
        add_count(list.size());
    }
    void bytes(const std::vector<unsigned char>& bytes) { add_all(bytes); }
    template<class Vector>
    void values(const std::vector<Vector>& vectors, float, float) {
        add_all(vectors);
    }
    template<class Vector>
    void values_or_none(const std::vector<Vector>& vectors, std::size_t, float, float) {
        add_all(vectors);
    }
    void triangles(const std::vector<Triangle>& triangles, std::size_t) { add_all(triangles); }
    void material(std::uint32_t material, std::size_t) { room.add_number(material); }
    void ends(std::size_t) {}
    void sight(const Viewpoint&) {}

private:
    void add_count(std::uint64_t count) { room.add_number(count); }
    template<class Value>
    void add_all(const std::vector<Value>& values) {
        add_count(values.size());
        room.add(values.data(), values.size() * sizeof(Value));
    }

    AnswerRoom& room;
};

} // namespace

void write_answer(Draft& draft, AnswerRoom& room) {
    WriteWay way(room);
    pass_draft(way, draft);
}

} // namespace orvex::formats
