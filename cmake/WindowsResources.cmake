# SPDX-License-Identifier: Apache-2.0

# windows_resources(TARGET DESCRIPTION): icon, version and manifest (screens of high density, long paths, UTF-8) of a
# program for Windows.
function(windows_resources target description)
  set(WINDOWS_PROGRAM ${target})
  set(WINDOWS_DESCRIPTION ${description})
  set(from ${PROJECT_SOURCE_DIR}/packaging)
  set(own ${CMAKE_CURRENT_BINARY_DIR}/windows)
  configure_file(${from}/windows/program.rc.in ${own}/${target}.rc @ONLY)
  configure_file(${from}/windows/program.manifest.in ${own}/${target}.manifest @ONLY)
  set(icon ${own}/texturon.ico)
  if(NOT TARGET windows_icon)
    find_program(RSVG_CONVERT rsvg-convert REQUIRED)
    find_program(ICOTOOL icotool REQUIRED)
    foreach(size 16 20 24 32 40 48 64 128 256)
      list(APPEND draw COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${own}/${size}.png ${from}/linux/texturon.svg)
      list(APPEND pictures ${own}/${size}.png)
    endforeach()
    list(TRANSFORM pictures REPLACE "(.*/256.png)" "--raw=\\1")  # the largest one stays packed
    add_custom_command(OUTPUT ${icon} ${draw} COMMAND ${ICOTOOL} -c -o ${icon} ${pictures}
      DEPENDS ${from}/linux/texturon.svg VERBATIM)
    add_custom_target(windows_icon DEPENDS ${icon})
  endif()
  target_sources(${target} PRIVATE ${own}/${target}.rc)
  set_source_files_properties(${own}/${target}.rc PROPERTIES OBJECT_DEPENDS "${icon};${own}/${target}.manifest"
    INCLUDE_DIRECTORIES ${own})
  add_dependencies(${target} windows_icon)
endfunction()
