#include "orvex/base/owned_text.h"

#include <string.h> // strnlen

#include <cstring>
#include <utility>

namespace orvex {

void OwnedText::assign(const char* text) {
    assign(text, text ? std::strlen(text) : 0);
}

void OwnedText::assign(const char* text, unsigned long size) {
    std::unique_ptr<char[]> other;
    if (text) {
        const unsigned long length = strnlen(text, size);
        other = std::make_unique<char[]>(length + 1);
        std::memcpy(other.get(), text, length);
    }
    // Only now: the text may be part of the old one.
    copy = std::move(other);
}

void OwnedText::reset() {
    copy.reset();
}

} // namespace orvex
