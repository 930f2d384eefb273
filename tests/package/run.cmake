# Makes the packages of a build, unpacks them into an empty root, and works there: a host and the first
# example are built and run, the tool renders. Then makes the source tarball and configures what is in it.
#
# Expects SOURCE_DIR, BUILD_DIR, HOST_DIR, WORK_DIR, GENERATOR, CXX_COMPILER, PYTHON, VERSION and SOVERSION.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}/root")
set(root "${WORK_DIR}/root")

# run(<command>): its output is in `output`.
macro(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${WORK_DIR}" COMMAND_ECHO STDOUT
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${result}\n${output}\n${errors}")
  endif()
endmacro()

function(expect_match text expression what)
  if(NOT text MATCHES "${expression}")
    message(FATAL_ERROR "${what} lacks ${expression}:\n${text}")
  endif()
endfunction()

function(expect_one_file pattern)
  file(GLOB found LIST_DIRECTORIES FALSE "${root}/${pattern}")
  list(LENGTH found count)
  if(NOT count EQUAL 1)
    message(FATAL_ERROR "${pattern} is there ${count} times")
  endif()
endfunction()

function(expect_jpeg file)
  file(READ "${file}" start LIMIT 3 HEX)
  if(NOT start STREQUAL "ffd8ff")
    message(FATAL_ERROR "${file} is no JPEG file: ${start}")
  endif()
endfunction()

# --- Debian packages

run(cpack --config "${BUILD_DIR}/CPackConfig.cmake" -G DEB -B "${WORK_DIR}/packages")
run(dpkg --print-architecture)
string(STRIP "${output}" architecture)

function(depends_of package variable)
  run(dpkg-deb -f "${WORK_DIR}/packages/${package}_${VERSION}_${architecture}.deb" Depends)
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

set(runtime liborvex-r-osx${SOVERSION})
set(kit liborvex-kit${SOVERSION})
depends_of(${runtime} depends)
foreach(library libc6 libegl1 libopengl0 "libstdc[+][+]6" libtinyxml2)
  expect_match("${depends}" "${library}" "what ${runtime} depends on")
endforeach()
run(dpkg-deb -f "${WORK_DIR}/packages/${runtime}_${VERSION}_${architecture}.deb" Recommends)
expect_match("${output}" libgl1-mesa-dri "what ${runtime} recommends")
foreach(package ${kit} liborvex-c0 liborvex-dev orvex-import orvex-tools orvex-view)
  depends_of(${package} depends)
  expect_match("${depends}" "${runtime} \\(= ${VERSION}\\)" "what ${package} depends on")
endforeach()

depends_of(liborvex-c0 depends)
expect_match("${depends}" "${kit} \\(= ${VERSION}\\)" "what liborvex-c0 depends on")
depends_of(liborvex-c-dev depends)
expect_match("${depends}" "liborvex-c0 \\(= ${VERSION}\\)" "what liborvex-c-dev depends on")
depends_of(orvex-view depends)
expect_match("${depends}" libglfw3 "what orvex-view depends on")
depends_of(orvex-tools depends)
if(depends MATCHES libglfw3)
  message(FATAL_ERROR "orvex-tools wants a display's library: ${depends}")
endif()

depends_of(orvex-import depends)
expect_match("${depends}" libassimp "what orvex-import depends on")
depends_of(${kit} depends)
if(depends MATCHES libassimp)
  message(FATAL_ERROR "${kit} wants the importer's library: ${depends}")
endif()

foreach(package ${runtime} ${kit} liborvex-c0 liborvex-dev liborvex-c-dev orvex-import orvex-tools
        orvex-view)
  list(APPEND packages "${WORK_DIR}/packages/${package}_${VERSION}_${architecture}.deb")
endforeach()
# What people read is the same on every machine.
list(APPEND packages "${WORK_DIR}/packages/liborvex-doc_${VERSION}_all.deb"
  "${WORK_DIR}/packages/python3-orvex_${VERSION}_all.deb")
foreach(package IN LISTS packages)
  run(dpkg-deb -x "${package}" "${root}")
endforeach()
file(GLOB top RELATIVE "${root}" "${root}/*")
if(NOT top STREQUAL "usr")
  message(FATAL_ERROR "outside of usr: ${top}")
endif()
file(GLOB_RECURSE libdir "${root}/usr/lib*/liborvex_r_osx.so.${VERSION}")
cmake_path(GET libdir PARENT_PATH libdir)
cmake_path(RELATIVE_PATH libdir BASE_DIRECTORY "${root}")
foreach(file
    ${libdir}/liborvex_r_osx.so.${SOVERSION} ${libdir}/liborvex_r_osx.so
    ${libdir}/liborvex_kit.so.${SOVERSION} ${libdir}/liborvex_kit.so
    ${libdir}/liborvex_c.so.0 ${libdir}/liborvex_c.so ${libdir}/pkgconfig/orvex-c.pc
    usr/include/orvex_c/orvex.h ${libdir}/cmake/orvex/orvex-c-targets.cmake
    ${libdir}/pkgconfig/orvex.pc ${libdir}/pkgconfig/orvex-kit.pc ${libdir}/cmake/orvex/orvex-config.cmake
    usr/include/orvex/orvex.h usr/include/orvex/scene/camera.h usr/include/orvex_kit/kit.h usr/share/doc/orvex/LICENSE
    usr/bin/orvex-render usr/share/man/man1/orvex-render.1.gz
    usr/share/bash-completion/completions/orvex-render
    usr/share/mime/packages/orvex-render.xml usr/share/thumbnailers/orvex-render.thumbnailer
    usr/share/doc/orvex/html/index.html usr/share/doc/orvex/html/md_docs_guide_first_picture.html
    usr/share/doc/orvex/html/classorvex_1_1kit_1_1View.html usr/share/doc/orvex/html/guide_first_picture.jpg
    usr/share/doc/orvex/examples/guide/first_picture.cpp
    ${libdir}/orvex/orvex-import ${libdir}/orvex/plugins/orvex_import.so
    usr/bin/orvex-view usr/share/man/man1/orvex-view.1.gz
    usr/share/bash-completion/completions/orvex-view)
  expect_one_file("${file}")
endforeach()

# --- Debian's own check. A build for /usr puts libraries into the folder of its architecture; one for
# --- another prefix does not, which is all that is overlooked here.

set(overlooked "")
if(libdir STREQUAL "usr/lib")
  set(overlooked --suppress-tags pkg-config-unavailable-for-cross-compilation)
endif()
run(lintian --allow-root --fail-on error,warning ${overlooked} ${packages})

# --- A host and the tool, from the root

run("${CMAKE_COMMAND}" -S "${HOST_DIR}" -B "${WORK_DIR}/host" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${root}/usr" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/host")
run("${WORK_DIR}/host/host" "${HOST_DIR}/" "${WORK_DIR}/host.jpg")
expect_jpeg("${WORK_DIR}/host.jpg")
run("${root}/usr/bin/orvex-render" "${HOST_DIR}/square.obj" --size 64x48 --text Hello
  --output "${WORK_DIR}/tool.jpg")
expect_jpeg("${WORK_DIR}/tool.jpg")
run("${root}/usr/bin/orvex-view" --version)
expect_match("${output}" "^orvex-view ${VERSION}" "the viewer's version")

# --- The first example, copied out of what people read: it draws the model beside it

file(GLOB example "${root}/usr/share/doc/orvex/examples/*first_picture")
file(COPY "${example}/" DESTINATION "${WORK_DIR}/first_picture")
run("${CMAKE_COMMAND}" -S "${WORK_DIR}/first_picture" -B "${WORK_DIR}/first_picture/build" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${root}/usr" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/first_picture/build")
file(COPY "${root}/usr/share/doc/orvex/examples/data" DESTINATION "${WORK_DIR}")
run("${CMAKE_COMMAND}" -E chdir "${WORK_DIR}/data" "${WORK_DIR}/first_picture/build/first_picture")
expect_jpeg("${WORK_DIR}/data/lighthouse.jpg")

# --- The last one, in C

file(GLOB example "${root}/usr/share/doc/orvex/examples/*from_c")
file(COPY "${example}/" DESTINATION "${WORK_DIR}/from_c")
run("${CMAKE_COMMAND}" -S "${WORK_DIR}/from_c" -B "${WORK_DIR}/from_c/build" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${root}/usr")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/from_c/build")
run("${CMAKE_COMMAND}" -E chdir "${WORK_DIR}/data" "${WORK_DIR}/from_c/build/from_c")
expect_jpeg("${WORK_DIR}/data/from_c.jpg")

# --- The module for Python

file(MAKE_DIRECTORY "${WORK_DIR}/models")
run("${CMAKE_COMMAND}" -E env "PYTHONPATH=${root}/usr/lib/python3/dist-packages" "LD_LIBRARY_PATH=${root}/${libdir}"
  "${PYTHON}" "${SOURCE_DIR}/tests/python/shown.py" "${WORK_DIR}/models")
expect_match("${output}" "^${VERSION} ${root}" "the module's version")

# Its bytecode is made as it is installed: whoever starts it later may not write it there.
file(WRITE "${WORK_DIR}/bin/py3compile" "#!/bin/sh\necho compiled $*\n")
file(WRITE "${WORK_DIR}/bin/py3clean" "#!/bin/sh\necho cleaned $*\n")
file(CHMOD_RECURSE "${WORK_DIR}/bin" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
run(dpkg-deb -e "${WORK_DIR}/packages/python3-orvex_${VERSION}_all.deb" "${WORK_DIR}/control")
run("${CMAKE_COMMAND}" -E env "PATH=${WORK_DIR}/bin:$ENV{PATH}" "${WORK_DIR}/control/postinst" configure)
expect_match("${output}" "^compiled -p python3-orvex\n$" "what python3-orvex does as it is installed")
run("${CMAKE_COMMAND}" -E env "PATH=${WORK_DIR}/bin:$ENV{PATH}" "${WORK_DIR}/control/prerm" remove)
expect_match("${output}" "^cleaned -p python3-orvex\n$" "what python3-orvex does as it is removed")

# --- A font for hosts of the engine alone, where the package says

file(WRITE "${WORK_DIR}/font/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(font LANGUAGES NONE)
find_package(orvex 0.9 CONFIG REQUIRED)
foreach(file dejavu_sans_24.xml dejavu_sans_24.png)
  if(NOT EXISTS "${orvex_FONT_DIR}/${file}")
    message(FATAL_ERROR "no ${file} in '${orvex_FONT_DIR}'")
  endif()
endforeach()
]])
run("${CMAKE_COMMAND}" -S "${WORK_DIR}/font" -B "${WORK_DIR}/font/build" "-DCMAKE_PREFIX_PATH=${root}/usr")

# --- The source tarball

run(cpack --config "${BUILD_DIR}/CPackSourceConfig.cmake" -G TGZ -B "${WORK_DIR}/source")
run("${CMAKE_COMMAND}" -E chdir "${WORK_DIR}/source"
  "${CMAKE_COMMAND}" -E tar xzf "orvex-${VERSION}.tar.gz")
set(source "${WORK_DIR}/source/orvex-${VERSION}")
foreach(stranger .git build out deps)
  if(EXISTS "${source}/${stranger}")
    message(FATAL_ERROR "the tarball holds ${stranger}")
  endif()
endforeach()
if(EXISTS "${SOURCE_DIR}/.git")
  run(git -C "${SOURCE_DIR}" ls-files)
  string(REGEX REPLACE "\n" ";" files "${output}")
  foreach(file IN LISTS files)
    if(EXISTS "${SOURCE_DIR}/${file}" AND NOT EXISTS "${source}/${file}")
      message(FATAL_ERROR "the tarball lacks ${file}")
    endif()
  endforeach()
endif()
run("${CMAKE_COMMAND}" -S "${source}" -B "${WORK_DIR}/source/build" -G "${GENERATOR}"
  "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" -DORVEX_BUILD_TESTS=OFF -DORVEX_WITH_LIB3DS=OFF)
