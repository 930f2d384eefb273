#include "orvex/base/owned_text.h"

#include <string.h> // strnlen

#include <cstring>

namespace orvex {

OwnedText::~OwnedText() {
    delete[] text_;
}

void OwnedText::assign(const char* text) {
    assign(text, text ? std::strlen(text) : 0);
}

void OwnedText::assign(const char* text, unsigned long size) {
    char* copy = nullptr;
    if (text) {
        const unsigned long length = strnlen(text, size);
        copy = new char[length + 1]();
        std::memcpy(copy, text, length);
    }
    delete[] text_;
    text_ = copy;
}

void OwnedText::reset() {
    delete[] text_;
    text_ = nullptr;
}

} // namespace orvex
