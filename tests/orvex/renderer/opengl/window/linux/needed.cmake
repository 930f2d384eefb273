# Reads what the shared library needs at load time: no window system but EGL, and no GLUT. What it
# uses of them is looked up in processes that have them.
execute_process(COMMAND "${READELF}" -d "${LIBRARY}" OUTPUT_VARIABLE entries RESULT_VARIABLE code)
if(NOT code EQUAL 0 OR NOT entries MATCHES "NEEDED.*libEGL")
  message(FATAL_ERROR "can't read what ${LIBRARY} needs:\n${entries}")
endif()
string(REGEX MATCHALL "NEEDED[^\n]*lib(X|xcb|wayland|glut|GLX|GL\\.)[^\n]*" unwanted "${entries}")
if(unwanted)
  message(FATAL_ERROR "${LIBRARY} is linked with a window system:\n${unwanted}")
endif()
