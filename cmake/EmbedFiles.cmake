# SPDX-License-Identifier: Apache-2.0

# embed_files(TARGET FUNCTION FOLDER): a source of the target with the text of every .ini file of the folder, as
# std::span<const EmbeddedFile> FUNCTION() in the order of their names (base/embedded_file.h).
function(embed_files target function folder)
  file(GLOB files CONFIGURE_DEPENDS ${folder}/*.ini)
  list(SORT files)
  set(source "// Made by cmake/EmbedFiles.cmake.\n#include \"base/embedded_file.h\"\n\nnamespace texturon {\n")
  string(APPEND source "namespace {\nconstexpr EmbeddedFile kFiles[] = {\n")
  foreach(file IN LISTS files)
    file(READ ${file} text)
    get_filename_component(name ${file} NAME_WLE)
    string(APPEND source "    {\"${name}\", R\"EMBED(${text})EMBED\"},\n")
  endforeach()
  string(APPEND source "};\n}  // namespace\n\nstd::span<const EmbeddedFile> ${function}();\n")
  string(APPEND source "std::span<const EmbeddedFile> ${function}() { return kFiles; }\n\n}  // namespace texturon\n")
  set(output ${CMAKE_CURRENT_BINARY_DIR}/embedded_${function}.cpp)
  file(WRITE ${output}.new "${source}")
  configure_file(${output}.new ${output} COPYONLY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${files})
  target_sources(${target} PRIVATE ${output})
endfunction()
