# Finds lib3ds with the 2.x interface: an installed one first, then the one that scripts/get_lib3ds.sh
# builds. The 1.3 that distributions package has another interface under the same name and is passed over.
#
# Gives Lib3ds_INCLUDE_DIR, Lib3ds_LIBRARY, the target Lib3ds::Lib3ds, and Lib3ds_PREFIX, which is set
# only for the one of our own, which is installed with the engine.

set(lib3ds_prefix "${PROJECT_SOURCE_DIR}/deps/lib3ds")

# An operation that only 2.x has stands in its header and among the names that its library exports.
function(lib3ds_is_2x result file)
  file(STRINGS "${file}" found REGEX "lib3ds_file_create_nodes_for_meshes" LIMIT_COUNT 1)
  if(NOT found)
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()
function(lib3ds_header_is_2x result folder)
  lib3ds_is_2x(is_2x "${folder}/lib3ds.h")
  if(DEFINED is_2x)
    set(${result} FALSE PARENT_SCOPE)
  endif()
endfunction()

find_path(Lib3ds_INCLUDE_DIR lib3ds.h
  PATHS "${lib3ds_prefix}/include" VALIDATOR lib3ds_header_is_2x)
find_library(Lib3ds_LIBRARY NAMES 3ds-2 3ds-2_0 3ds
  HINTS "${Lib3ds_INCLUDE_DIR}/../lib" VALIDATOR lib3ds_is_2x)
mark_as_advanced(Lib3ds_INCLUDE_DIR Lib3ds_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Lib3ds REQUIRED_VARS Lib3ds_LIBRARY Lib3ds_INCLUDE_DIR)

if(Lib3ds_FOUND AND NOT TARGET Lib3ds::Lib3ds)
  add_library(Lib3ds::Lib3ds UNKNOWN IMPORTED)
  set_target_properties(Lib3ds::Lib3ds PROPERTIES
    IMPORTED_LOCATION "${Lib3ds_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Lib3ds_INCLUDE_DIR}")
endif()

cmake_path(IS_PREFIX lib3ds_prefix "${Lib3ds_LIBRARY}" NORMALIZE lib3ds_is_ours)
if(lib3ds_is_ours)
  set(Lib3ds_PREFIX "${lib3ds_prefix}")
else()
  unset(Lib3ds_PREFIX)
endif()
