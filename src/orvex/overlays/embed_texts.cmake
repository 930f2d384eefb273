# Writes the C++ source that defines the texts of one public header: HEADER (its path from the include
# root), NAMESPACE, TEXTS (the .glsl files, each named after its variable, parted by "|"), OUTPUT.
#
# A text is its file without the last line feed: drivers and hosts see every other byte of it.

set(source "#include \"${HEADER}\"\n\nnamespace ${NAMESPACE} {\n")
string(REPLACE "|" ";" files "${TEXTS}")
foreach(file IN LISTS files)
  cmake_path(GET file STEM name)
  file(READ "${file}" text)
  string(REGEX REPLACE "\n$" "" text "${text}")
  string(APPEND source "\nconst char* ${name} =\n    R\"glsl(${text})glsl\";\n")
endforeach()
file(WRITE "${OUTPUT}" "${source}\n} // namespace ${NAMESPACE}\n")
