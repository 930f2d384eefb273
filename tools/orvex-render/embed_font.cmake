# Writes the built-in font as a C++ source: FONT_DIR with plain.xml and plain.png, OUTPUT.

function(bytes_of file result)
  file(READ "${file}" hex HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
  string(REGEX REPLACE "((0x..,){16})" "\\1\n" bytes "${bytes}")
  set(${result} "${bytes}" PARENT_SCOPE)
endfunction()

bytes_of("${FONT_DIR}/plain.xml" charset)
bytes_of("${FONT_DIR}/plain.png" sheet)
file(WRITE "${OUTPUT}" "#include \"builtin_font.h\"

char const builtin_charset[] = {
${charset}0};

unsigned char const builtin_sheet[] = {
${sheet}};

unsigned long const builtin_sheet_size = sizeof builtin_sheet;
")
