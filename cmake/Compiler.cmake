# Compiler settings that every target shares. Sound must not depend on the build: no fast-math, no contraction.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O3")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g")

set(VELMORA_SANITIZE "" CACHE STRING "Sanitizers to build with, comma-separated")

add_compile_options(-ffp-contract=off -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor
  -Wno-missing-field-initializers -Wold-style-cast -Wdouble-promotion -Wfloat-conversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wno-restrict)  # GCC 12 sees overlaps in std::string's operator+ that aren't there
endif()
if(VELMORA_SANITIZE)
  set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")  # line numbers for the reports are enough
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
  add_compile_definitions(VELMORA_SANITIZED)
endif()

add_compile_definitions(QT_NO_KEYWORDS)

find_program(CCACHE ccache)
if(CCACHE)
  # Without these two ccache keeps nothing that starts from a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE}")
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
