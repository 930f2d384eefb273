#include "gpu/owned_text.h"

#include <cstring>

namespace orvex {

OwnedText::~OwnedText() {
    delete[] text_;
}

void OwnedText::assign(char const* text) {
    assign(text, text ? std::strlen(text) : 0);
}

void OwnedText::assign(char const* text, unsigned long size) {
    char* copy = nullptr;
    if (text) {
        copy = new char[size + 1]();
        std::strncpy(copy, text, size);
    }
    delete[] text_;
    text_ = copy;
}

void OwnedText::reset() {
    delete[] text_;
    text_ = nullptr;
}

} // namespace orvex
