# The umbrella header of a library names each of its public headers, and nothing else.
#
# Expects SOURCE_DIR, UMBRELLA below it, and HEADERS.

file(STRINGS "${SOURCE_DIR}/${UMBRELLA}" lines REGEX "^#include \"")
list(TRANSFORM lines REPLACE "^#include \"(.*)\"$" "\\1")
string(REPLACE "," ";" wanted "${HEADERS}")
list(REMOVE_ITEM wanted ${UMBRELLA})
list(SORT lines)
list(SORT wanted)
set(missing ${wanted})
list(REMOVE_ITEM missing ${lines})
set(strangers ${lines})
list(REMOVE_ITEM strangers ${wanted})
if(missing OR strangers)
  message(FATAL_ERROR "${UMBRELLA} lacks: ${missing}\nIt names what is not public: ${strangers}")
endif()
