# Language level, warnings, sanitizers, linker and compiler cache: the same for every target.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# Designated initializers name what matters; the rest has its default.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wno-missing-field-initializers)
# Ordinary names such as `signals` and `emit` stay ours; the string types do not mix by accident.
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                        QT_NO_URL_CAST_FROM_STRING QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # The standard library's own std::stable_sort uses what it has deprecated.
  add_compile_options(-Wno-deprecated-declarations)
endif()

if(MORVO_SANITIZE)
  # A report needs no more than lines, which are quicker to compile and to link than all of -g.
  add_compile_options(-g1 -fsanitize=${MORVO_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${MORVO_SANITIZE})
  if(MORVO_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
  endif()
endif()

find_program(MORVO_CCACHE ccache)
if(MORVO_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${MORVO_CCACHE}")
endif()

find_program(MORVO_MOLD mold)
if(MORVO_MOLD)
  add_link_options(-fuse-ld=mold)
endif()
