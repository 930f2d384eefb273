# Writes the kit's looks as a C++ source: LOOKS, files with bars between; OUTPUT. Compilers take literals of 64 KiB.

set(rows "")
string(REPLACE "|" ";" LOOKS "${LOOKS}")
foreach(file IN LISTS LOOKS)
  cmake_path(GET file STEM name)
  file(READ "${file}" text)
  string(APPEND rows "    {\"${name}\", R\"look(${text})look\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"orvex_kit/private/builtin_looks.h\"

namespace orvex::kit {

const BuiltinLook builtin_looks[] = {
${rows}    {nullptr, nullptr}};

} // namespace orvex::kit
")
