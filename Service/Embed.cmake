# embed_files(TARGET FILES...)
#
# Compiles text files into a target: EmbeddedFiles.h declares each as a string under its name without the extension.
function(embed_files TARGET)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/Embedded)
  set(declarations "")
  set(definitions "")
  foreach(file IN LISTS ARGN)
    get_filename_component(name ${file} NAME_WE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    file(READ ${file} text HEX)
    # Bytes, since compilers limit the length of a string literal.
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${text}")
    string(APPEND declarations "extern const std::string ${name};\n")
    string(APPEND definitions "const char ${name}Bytes[] = { ${bytes} };\n"
      "const std::string EmbeddedFiles::${name}(${name}Bytes, sizeof(${name}Bytes));\n")
  endforeach()
  file(CONFIGURE OUTPUT ${folder}/EmbeddedFiles.h @ONLY
    CONTENT "#pragma once\n#include <string>\nnamespace EmbeddedFiles\n{\n@declarations@}\n")
  file(CONFIGURE OUTPUT ${folder}/EmbeddedFiles.cpp @ONLY CONTENT "#include \"EmbeddedFiles.h\"\n@definitions@")
  target_sources(${TARGET} PRIVATE ${folder}/EmbeddedFiles.cpp)
  target_include_directories(${TARGET} PRIVATE ${folder})
endfunction()
