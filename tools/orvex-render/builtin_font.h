#pragma once

/// @file
/// The font in `font/`, as part of the program.

/// Its charset, in BMFont XML.
extern const char builtin_charset[];
/// Its sheet, a PNG file.
extern const unsigned char builtin_sheet[];
extern const unsigned long builtin_sheet_size;
