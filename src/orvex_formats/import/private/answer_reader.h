#pragma once

/// @file
/// Reading what the importer answers.

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Reads an answer with a model as any file is read: nothing of it is believed. Names of files and
/// pictures in it are as the answer has them, whatever they are.
/// @throw Refusal
Draft read_answer(const InputFile& answer);

} // namespace orvex::formats
