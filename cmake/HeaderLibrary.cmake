# SPDX-License-Identifier: Apache-2.0

# header_library(TARGET PACKAGE FOLDER): a library of headers alone, by its package, or, for another system, by the headers
# of this one: they are linked into a folder by themselves, because those beside them belong to this system.
function(header_library target package folder)
  if(NOT CMAKE_CROSSCOMPILING)
    find_package(${package} REQUIRED)
    return()
  endif()
  find_path(${folder}_above ${folder} PATHS /usr/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  set(own ${PROJECT_BINARY_DIR}/headers)
  file(MAKE_DIRECTORY ${own})
  file(CREATE_LINK ${${folder}_above}/${folder} ${own}/${folder} SYMBOLIC)
  if(NOT TARGET ${target})
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE ${own})
  endif()
endfunction()
