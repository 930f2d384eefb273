#pragma once

/// @file
/// The font in `font/`, as part of the program.

/// Its charset, in BMFont XML.
extern char const builtin_charset[];
/// Its sheet, a PNG file.
extern unsigned char const builtin_sheet[];
extern unsigned long const builtin_sheet_size;
