# find_plain_library(NAME header library [directories below an include path]): a library that brings no package file, as
# the target NAME::NAME.
include(FindPackageHandleStandardArgs)

macro(find_plain_library name header library)
  find_path(${name}_INCLUDE_DIR ${header} PATH_SUFFIXES ${ARGN})
  find_library(${name}_LIBRARY ${library})
  find_package_handle_standard_args(${name} REQUIRED_VARS ${name}_LIBRARY ${name}_INCLUDE_DIR)
  if(${name}_FOUND AND NOT TARGET ${name}::${name})
    add_library(${name}::${name} UNKNOWN IMPORTED)
    set_target_properties(${name}::${name} PROPERTIES
      IMPORTED_LOCATION "${${name}_LIBRARY}"
      INTERFACE_INCLUDE_DIRECTORIES "${${name}_INCLUDE_DIR}")
  endif()
  mark_as_advanced(${name}_INCLUDE_DIR ${name}_LIBRARY)
endmacro()
