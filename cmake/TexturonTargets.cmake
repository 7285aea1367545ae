# SPDX-License-Identifier: Apache-2.0
# What every target of the project shares.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# A result must not depend on the processor: no fused multiply-add behind our back, no reassociation.
add_library(texturon_options INTERFACE)
if(MSVC)
  target_compile_options(texturon_options INTERFACE /W4 /WX /fp:precise /utf-8)
else()
  target_compile_options(texturon_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -ffp-contract=off
    -Wno-missing-field-initializers)  # records have defaults; initialisers name what differs from them
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # False alarms of g++ 12 on joined strings.
    target_compile_options(texturon_options INTERFACE -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds)
  endif()
  if(TEXTURON_SANITIZE)
    target_compile_options(texturon_options INTERFACE
      -fsanitize=${TEXTURON_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
      # False alarms in the standard library's own code.
      target_compile_options(texturon_options INTERFACE -Wno-maybe-uninitialized)
    endif()
    target_link_options(texturon_options INTERFACE -fsanitize=${TEXTURON_SANITIZE})
  endif()
  if(TEXTURON_FUZZ)
    target_compile_options(texturon_options INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()

# texturon_floor(name LINKS ...): one floor of the engine, with every source of its folder.
function(texturon_floor name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE texturon_options)
  # What nearly every source includes, compiled once: most of the time of a build was spent reading these. The builds of
  # the other compiler and of the sanitizers do without, so that no source comes to lack an include of its own.
  if(name STREQUAL base)
    target_precompile_headers(base PRIVATE <algorithm> <array> <cmath> <filesystem> <functional> <memory> <optional> <span>
                              <string> <string_view> <unordered_map> <utility> <vector>)
  else()
    target_precompile_headers(${name} REUSE_FROM base)
  endif()
endfunction()
