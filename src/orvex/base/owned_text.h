#pragma once

/// @file
/// OwnedText: a text that may be absent.

#include <memory>

#include "orvex/api.h"

namespace orvex {

/// A text that may be absent: null, or a terminated copy that this object owns.
///
/// The records of GPU programs hold their names, sources and logs in it. An empty text and an
/// absent one are different things. Not locked; a value of its record.
///
/// @code
/// orvex::OwnedText name;
/// name.assign("orvex_Position");
/// name.reset(); // name.get() is null
/// @endcode
class ORVEX_API OwnedText {
public:
    /// Starts absent.
    OwnedText() = default;
    ~OwnedText() = default;
    OwnedText(const OwnedText&) = delete;
    OwnedText& operator=(const OwnedText&) = delete;
    /// Takes the text of another one over, which is absent then.
    OwnedText(OwnedText&&) = default;
    /// The same, in place of its own.
    OwnedText& operator=(OwnedText&&) = default;

    /// Returns the text, or null when it is absent. Valid until the next change.
    const char* get() const { return copy.get(); }

    /// Replaces the text by a copy of `text`, which may be part of the old one. Null makes it
    /// absent.
    void assign(const char* text);

    /// Replaces the text by at most `size` characters of `text`, up to its terminator, which need
    /// not come. Null makes it absent.
    /// @param size  bytes that may be read; 0 gives an empty text
    void assign(const char* text, unsigned long size);

    /// Makes the text absent and frees the copy.
    void reset();

private:
    std::unique_ptr<char[]> copy;
};

} // namespace orvex
