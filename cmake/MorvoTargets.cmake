# morvo_library(<name> FOLDER <folder under src/> [OWN_HEADERS_ONLY]
#               SOURCES <files...> [PUBLIC <targets...>] [PRIVATE <targets...>])
#
# One folder, one static library. The library's only include directory holds nothing but a link
# to its own folder, so `#include "monitor/HookParser.h"` works exactly for targets that link
# `monitor`: the link lists are the architecture.
#
# OWN_HEADERS_ONLY links the folder's headers one by one instead, for a folder whose subfolders
# are targets of their own.
function(morvo_library name)
  cmake_parse_arguments(arg "OWN_HEADERS_ONLY" "FOLDER" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  morvo_include_folder(${name} ${arg_FOLDER} ${arg_OWN_HEADERS_ONLY})
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
endfunction()

function(morvo_include_folder name folder own_headers_only)
  set(source "${CMAKE_SOURCE_DIR}/src/${folder}")
  set(root "${CMAKE_BINARY_DIR}/include/${name}")
  set(link "${root}/${folder}")
  if(own_headers_only)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE "${source}" "${source}/*.h")
    file(MAKE_DIRECTORY "${link}")
    foreach(header IN LISTS headers)
      file(CREATE_LINK "${source}/${header}" "${link}/${header}" SYMBOLIC)
    endforeach()
  else()
    cmake_path(GET link PARENT_PATH parent)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${source}" "${link}" SYMBOLIC)
  endif()
  target_include_directories(${name} PUBLIC "${root}")
endfunction()
