#pragma once

#include "orvex/api.h"

namespace orvex {

/// A text that may be absent: null, or a terminated copy that this object owns.
///
/// The records of GPU programs hold their names, sources and logs in it. An empty text and an
/// absent one are different things. Not locked; a value of its record.
///
///     OwnedText name;
///     name.assign("orvex_Position");
///     name.reset(); // name.get() is null
class ORVEX_API OwnedText {
public:
    /// Starts absent.
    OwnedText() = default;
    ~OwnedText();
    OwnedText(const OwnedText&) = delete;
    OwnedText& operator=(const OwnedText&) = delete;

    /// Returns the text, or null when it is absent. Valid until the next change.
    const char* get() const { return text_; }

    /// Replaces the text by a copy of `text`, which may be part of the old one. Null makes it
    /// absent.
    void assign(const char* text);

    /// Replaces the text by at most `size` characters of `text`, up to its terminator, which need
    /// not come. Null makes it absent.
    void assign(const char* text, unsigned long size);

    /// Makes the text absent and frees the copy.
    void reset();

private:
    char* text_ = nullptr;
};

} // namespace orvex
