# SPDX-License-Identifier: Apache-2.0
# Windows programs built on Debian: g++-mingw-w64-x86-64-posix, everything linked in, tried under Wine where it is there.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(TEXTURON_WINDOWS_LIBRARIES "" CACHE PATH "Folder with Qt and QCustomPlot, as scripts/windows_qt makes them")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TEXTURON_WINDOWS_LIBRARIES)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${TEXTURON_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")  # the same sources, the same bytes
set(ZLIB_USE_STATIC_LIBS ON)

find_program(TEXTURON_WINE NAMES wine64-stable wine64 wine PATHS /usr/lib/wine)
if(TEXTURON_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${TEXTURON_WINE})
endif()
