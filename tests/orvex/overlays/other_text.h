#pragma once

#include <utility>

namespace orvex_test {

/// Puts a text of the host's own in place of a shader's for the rest of a block.
class OtherText {
public:
    OtherText(char const*& text, char const* other)
        : text(text)
        , before(std::exchange(text, other)) {}
    ~OtherText() { text = before; }
    OtherText(OtherText const&) = delete;
    OtherText& operator=(OtherText const&) = delete;

private:
    char const*& text;
    char const* before;
};

} // namespace orvex_test
