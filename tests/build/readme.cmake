# The hosts that the README shows are those that are compiled.

file(READ "${SOURCE_DIR}/README.md" readme)
foreach(file 01_first_picture/main.cpp 01_first_picture/CMakeLists.txt 16_first_model/main.cpp)
  file(READ "${SOURCE_DIR}/examples/${file}" text)
  string(FIND "${readme}" "\n${text}```" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "README.md does not show examples/${file} as it stands")
  endif()
endforeach()
