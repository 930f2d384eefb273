#pragma once

/// @file
/// Stands in for the OpenGL queries that tell what a context is.

#include <string>
#include <vector>

namespace orvex_test {

/// Answers glGetString, glGetIntegerv and glFlush in the one program that links it, for as long as
/// it lives. No context is needed, and none is touched. One at a time.
class FakeGl {
public:
    FakeGl();
    ~FakeGl();
    FakeGl(const FakeGl&) = delete;
    FakeGl& operator=(const FakeGl&) = delete;

    /// What a fetched glGetStringi calls.
    void* get_string_i() const;

    /// Makes the context of a version; `text` is null for none.
    void serve(const char* text, int major_number, int minor_number) {
        version = text;
        major = major_number;
        minor = minor_number;
    }

    const char* version = "2.1"; ///< null: no context
    int major = 0;               ///< 0: the context doesn't know the question
    int minor = 0;
    const char* extensions = nullptr; ///< the one text of old contexts
    std::vector<const char*> indexed; ///< the list of newer ones; an entry may be null
    void (*on_flush)(void* user_data) = nullptr;
    void* user_data = nullptr;
};

} // namespace orvex_test
