# SPDX-License-Identifier: Apache-2.0
# What every target of the project shares.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Programs lie at another place of memory each time, and a shared library can take the floors in. Nobody replaces their
# functions from outside: hidden, they cost no more than otherwise.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# What makes it hard to get from a fault to control of the program; in builds that are optimised.
function(texturon_harden)
  set(hardened "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
  include(CheckCXXCompilerFlag)
  set(flags -fstack-protector-strong)
  if(NOT WIN32)  # Windows probes the stack itself; g++ 12 stops at some functions when it shall do so too
    list(APPEND flags -fstack-clash-protection -fcf-protection)
  endif()
  foreach(flag ${flags})
    string(MAKE_C_IDENTIFIER "TEXTURON_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(texturon_options INTERFACE $<${hardened}:${flag}>)
    endif()
  endforeach()
  target_compile_options(texturon_options INTERFACE "$<${hardened}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  if(CMAKE_SYSTEM_NAME STREQUAL Linux)
    target_link_options(texturon_options INTERFACE "$<${hardened}:LINKER:-z,relro,-z,now>")
  elseif(MINGW)
    target_link_options(texturon_options INTERFACE $<${hardened}:-fstack-protector-strong>)  # its library
  endif()
endfunction()

# A result must not depend on the processor: no fused multiply-add behind our back, no reassociation.
add_library(texturon_options INTERFACE)
if(MSVC)
  target_compile_options(texturon_options INTERFACE /W4 /WX /fp:precise /utf-8)
else()
  target_compile_options(texturon_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -ffp-contract=off
    -Wno-missing-field-initializers)  # records have defaults; initialisers name what differs from them
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    # g++ 12 makes one instruction of a complex product's four, contraction or not, where it has it (-march=native).
    # AVX-512 brings it along.
    target_compile_options(texturon_options INTERFACE -mno-fma -mno-fma4 -mno-avx512f)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # False alarms of g++ 12 on joined strings.
    target_compile_options(texturon_options INTERFACE -Wno-restrict -Wno-stringop-overflow
      -Wno-stringop-overread -Wno-array-bounds)
  endif()
  if(NOT TEXTURON_SANITIZE AND NOT TEXTURON_FUZZ)
    texturon_harden()
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
  elseif(NOT name STREQUAL ui)  # has its own
    target_precompile_headers(${name} REUSE_FROM base)
  endif()
endfunction()

# texturon_joined(name): compiles eight sources of a target at a time. Every source of the windows has the same templates
# of Qt made for it, of the command line those of its parser: that is most of the time which one of them takes. Their
# file-local names must differ, therefore; builds without precompiled headers compile each by itself, but for packages.
function(texturon_joined name)
  if(TEXTURON_JOINED OR NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()
