#pragma once

#include <utility>

namespace orvex_test {

/// Puts a text of the host's own in place of a shader's for the rest of a block.
class OtherText {
public:
    OtherText(const char*& text, const char* other)
        : text(text)
        , before(std::exchange(text, other)) {}
    ~OtherText() { text = before; }
    OtherText(const OtherText&) = delete;
    OtherText& operator=(const OtherText&) = delete;

private:
    const char*& text;
    const char* before;
};

} // namespace orvex_test
