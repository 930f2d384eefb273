# What Debian wants in a package and no other prefix has: each package's licence and changes below its
# own name, manual pages compressed, no symbols in libraries. CPack runs this when all components are
# installed below CPACK_TEMPORARY_DIRECTORY, each in a folder of its name, and nothing is packed yet.
cmake_minimum_required(VERSION 3.25)

if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

# -n keeps the time out: a package made twice from the same files is the same.
function(compress)
  execute_process(COMMAND gzip -9n ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The section of this version in CHANGELOG.md, indented and wrapped as Debian wants it. The date is
# that of the packing, or SOURCE_DATE_EPOCH.
function(write_changelog file)
  string(REPLACE "." "[.]" version "${CPACK_PACKAGE_VERSION}")
  execute_process(
    COMMAND sed -n "/^## ${version}/,/^## /{/^##/d; s/^- /  * /; s/^  \\([^ *]\\)/    \\1/; p}"
      "${CPACK_ORVEX_CHANGELOG}"
    COMMAND fmt --tagged-paragraph --width=76
    OUTPUT_VARIABLE changes OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(TIMESTAMP time "%a, %d %b %Y %H:%M:%S +0000" UTC)
  file(WRITE "${file}" "orvex (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium
${changes}

 -- ${CPACK_PACKAGE_CONTACT}  ${time}
")
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" key)
  set(prefix "${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}")
  set(doc "${prefix}/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME}")
  write_changelog("${doc}/changelog")
  compress("${doc}/changelog")
  configure_file("${CMAKE_CURRENT_LIST_DIR}/copyright" "${doc}/copyright" COPYONLY)

  file(GLOB_RECURSE pages "${prefix}/share/man/*.1")
  if(pages)
    compress(${pages})
  endif()
endforeach()

# lib3ds is taken over as a file, so CPack doesn't strip it.
if(CPACK_ORVEX_LIB3DS)
  set(runtime "${CPACK_TEMPORARY_DIRECTORY}/runtime${CPACK_PACKAGING_INSTALL_PREFIX}")
  file(GLOB_RECURSE lib3ds "${runtime}/lib*/lib3ds-2.so")
  execute_process(COMMAND "${CPACK_ORVEX_STRIP}" --strip-unneeded "${lib3ds}"
    COMMAND_ERROR_IS_FATAL ANY)
  file(READ "${CMAKE_CURRENT_LIST_DIR}/copyright-lib3ds" stanza)
  file(APPEND "${runtime}/share/doc/${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME}/copyright" "${stanza}")
endif()

# What others made, beside it: the letters of the kit and the sheet of them, and what pages of a site run.
function(add_copyright component stanza_of)
  string(TOUPPER "${component}" key)
  set(prefix "${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}")
  file(READ "${CMAKE_CURRENT_LIST_DIR}/copyright-${stanza_of}" stanza)
  file(APPEND "${prefix}/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME}/copyright" "${stanza}")
endfunction()
foreach(component kit dev doc)
  add_copyright(${component} font)
endforeach()
add_copyright(doc site)
