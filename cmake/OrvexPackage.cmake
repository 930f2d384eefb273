# Debian packages and the source tarball: scripts/package.sh makes them. What Debian alone wants of a
# package is in cmake/debian, and goes to no other prefix.
set(CPACK_PACKAGE_NAME orvex)
set(CPACK_PACKAGE_VENDOR orvex)
# The form is Debian's, the mailbox nobody's. Who hands packages on gives one of their own, by
# cpack -D CPACK_PACKAGE_CONTACT="name <mailbox>".
set(CPACK_PACKAGE_CONTACT "orvex maintainers <maintainers@orvex.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)

set(CPACK_COMPONENTS_ALL runtime kit c dev c_dev doc)
set(CPACK_COMPONENT_KIT_DEPENDS runtime)
set(CPACK_COMPONENT_DEV_DEPENDS runtime kit)
set(CPACK_COMPONENT_C_DEPENDS runtime kit)
set(CPACK_COMPONENT_C_DEV_DEPENDS c dev)
if(ORVEX_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
  set(CPACK_COMPONENT_TOOLS_DEPENDS runtime kit)
endif()
if(TARGET orvex_python)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()
if(TARGET orvex-view)
  list(APPEND CPACK_COMPONENTS_ALL view)
  set(CPACK_COMPONENT_VIEW_DEPENDS runtime kit)
endif()
if(TARGET orvex-import)
  list(APPEND CPACK_COMPONENTS_ALL import)
  set(CPACK_COMPONENT_IMPORT_DEPENDS runtime kit)
endif()

set(soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_DEB_COMPONENT_INSTALL ON)
# It runs between installing and packing, for every generator, and knows of these.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/debian/finish.cmake")
set(CPACK_ORVEX_CHANGELOG "${PROJECT_SOURCE_DIR}/CHANGELOG.md")
set(CPACK_ORVEX_STRIP "${CMAKE_STRIP}")
set(CPACK_ORVEX_LIB3DS FALSE)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src/orvex"
  "${PROJECT_BINARY_DIR}/src/orvex_kit")
if(ORVEX_WITH_LIB3DS AND Lib3ds_PREFIX)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${Lib3ds_PREFIX}/lib")
  set(CPACK_ORVEX_LIB3DS TRUE)
endif()

# Named after the file that programs load, as Debian names libraries; packages made before were not.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liborvex-r-osx${soversion})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONFLICTS liborvex${soversion})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_REPLACES liborvex${soversion})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# Any driver does; this one needs no graphics device. GLUT is loaded for raster text alone.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS libgl1-mesa-dri)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS libglut3.12)
# The loader's cache is renewed by a trigger. CPack writes scripts that renew it unless it is given
# scripts, and leaves out, with a warning, those that it can't find.
set(control "${PROJECT_BINARY_DIR}/debian")
set(shlibs "liborvex_r_osx ${soversion} ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION})\n")
if(CPACK_ORVEX_LIB3DS)
  string(APPEND shlibs "lib3ds 2 ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION})\n")
endif()
file(WRITE "${control}/shlibs" "${shlibs}")
file(WRITE "${control}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${control}/shlibs" "${control}/triggers" "absent/postinst" "absent/postrm")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION}: the shared library
It loads models, builds scenes and draws them with OpenGL 2, 3.x and 4.x,
in a window or with no display at all.")

set(CPACK_DEBIAN_KIT_PACKAGE_NAME liborvex-kit${soversion})
set(CPACK_DEBIAN_KIT_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_KIT_PACKAGE_SHLIBDEPS ON)
file(WRITE "${control}/kit/shlibs"
  "liborvex_kit ${soversion} ${CPACK_DEBIAN_KIT_PACKAGE_NAME} (= ${PROJECT_VERSION})\n")
file(WRITE "${control}/kit/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_KIT_PACKAGE_CONTROL_EXTRA
  "${control}/kit/shlibs" "${control}/kit/triggers" "absent/postinst" "absent/postrm")
set(CPACK_COMPONENT_KIT_DESCRIPTION "${PROJECT_DESCRIPTION}: the kit
What hosts of the engine would otherwise write themselves, as a shared
library of its own.")

# Numbered by the interface, which only grows.
set(CPACK_DEBIAN_C_PACKAGE_NAME liborvex-c0)
set(CPACK_DEBIAN_C_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_C_PACKAGE_SHLIBDEPS ON)
file(WRITE "${control}/c/shlibs"
  "liborvex_c 0 ${CPACK_DEBIAN_C_PACKAGE_NAME} (>= ${PROJECT_VERSION})\n")
file(WRITE "${control}/c/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_C_PACKAGE_CONTROL_EXTRA
  "${control}/c/shlibs" "${control}/c/triggers" "absent/postinst" "absent/postrm")
set(CPACK_COMPONENT_C_DESCRIPTION "${PROJECT_DESCRIPTION}: the kit for C
Engine, views, models and cameras by handles and records of C99, for programs
in C and in every language that can call it.")

set(CPACK_DEBIAN_C_DEV_PACKAGE_NAME liborvex-c-dev)
set(CPACK_DEBIAN_C_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_C_DEV_DESCRIPTION "${PROJECT_DESCRIPTION}: the header for hosts in C
The header, and what CMake and pkg-config want to know to build a host in C
against the library.")

# For every Python 3: it calls the library for C, and is compiled nowhere.
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-orvex)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (>= 3.9), python3-cffi-backend, liborvex-c0 (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS python3-numpy)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS orvex-tools)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  "${CMAKE_CURRENT_LIST_DIR}/debian/python/postinst" "${CMAKE_CURRENT_LIST_DIR}/debian/python/prerm")
set(CPACK_COMPONENT_PYTHON_DESCRIPTION "${PROJECT_DESCRIPTION}: the module for Python
Pictures of models, depth, normals and ids as arrays, from files and arrays,
with no window and no file between.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME liborvex-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION "${PROJECT_DESCRIPTION}: headers for hosts
Headers, and what CMake and pkg-config want to know to build a host against
the library.")

set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS liborvex-doc)

set(CPACK_DEBIAN_DOC_PACKAGE_NAME liborvex-doc)
set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOC_DESCRIPTION "${PROJECT_DESCRIPTION}: guide and reference
A guide for newcomers with the reference of engine and kit, as a site to
be read in a browser, and the source of the examples.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME orvex-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${PROJECT_DESCRIPTION}: pictures from model files
orvex-render draws a model file to a picture, from the command line and with
no display.")

# Apart from the tools, which are for machines without a display, too.
set(CPACK_DEBIAN_VIEW_PACKAGE_NAME orvex-view)
set(CPACK_DEBIAN_VIEW_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_VIEW_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_VIEW_DESCRIPTION "${PROJECT_DESCRIPTION}: a viewer of model files
orvex-view shows a model file in a window, in several looks and layers, and
follows its changes on disk.")

# Apart from the kit as well: it is what brings others' readers of models to a machine.
set(CPACK_DEBIAN_IMPORT_PACKAGE_NAME orvex-import)
set(CPACK_DEBIAN_IMPORT_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_IMPORT_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_IMPORT_DESCRIPTION "${PROJECT_DESCRIPTION}: more model formats
The kit and the tools read FBX, COLLADA, Blender and other models by it, in
a process of its own that is kept from files, memory and the network.")

set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME orvex-${PROJECT_VERSION})
string(REGEX REPLACE "([][+.*()^$?|\\\\])" "[\\\\1]" top "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES
  "^${top}/[.]git/" "^${top}/[.]git$" "^${top}/build/" "^${top}/deps/" "^${top}/out/" "/__pycache__/")
include(CPack)
