# The host that the README shows is the one that is compiled.

file(READ "${SOURCE_DIR}/README.md" readme)
file(READ "${SOURCE_DIR}/examples/first_model/main.cpp" host)
string(FIND "${readme}" "```cpp\n${host}```" place)
if(place EQUAL -1)
  message(FATAL_ERROR "README.md does not show examples/first_model/main.cpp as it stands")
endif()
