#pragma once

/// @file
/// How an answer begins, and how the program that gives it is called.

#include <cstdint>

namespace orvex::formats {

/// The first bytes of an answer. They are written last: without them there is none.
struct AnswerHead {
    std::uint64_t mark = 0;
    std::uint64_t size = 0; ///< of the whole answer, this head included
};
/// Changes with every change of what an answer looks like.
inline constexpr std::uint64_t answer_mark = 0x3130'6e61'7672'6f02;

/// What is open in the program from its start.
enum ImporterDescriptor : int {
    input_descriptor = 3,    ///< the file, to be read from any place of it
    answer_descriptor = 4,   ///< room for the answer
    sentence_descriptor = 5, ///< takes the reason of a refusal
    folder_descriptor = 6    ///< that of the file, if the program may read there
};

/// The words that the program is started with, behind its name.
enum ImporterWord : int {
    memory_word = 1, ///< how many bytes it may take
    answer_word,     ///< how many bytes its answer may have
    seconds_word,    ///< how long it may work
    folder_word,     ///< "folder" or "alone"
    request_word,    ///< the first one of the request
    name_word,       ///< the model's file, without folders; or how many meshes are packed
    time_word        ///< the moment of a model in seconds; not there: at rest
};

} // namespace orvex::formats
