# All that HeaderTool writes: enough to check sources without building them.
add_custom_target(GeneratedHeaders)

# run_header_tool(<target> <header>...)
#
# Lets HeaderTool read the headers of a module and adds to the target what it writes: <Stem>.generated.h, for which the
# generated folder is put on the include path, and <Stem>.gen.cpp. The types of every module configured earlier can be
# used and must not be declared again; a module therefore comes after those it needs in the list of subdirectories.
#
# The tool leaves an output alone whose text stays the same, so that only what changed is compiled again; the stamp is
# what tells the build that the tool has run.
function(run_header_tool target)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/Generated/${target})
  set(stamp ${folder}/${target}.stamp)
  set(manifest ${folder}/${target}.types)
  file(MAKE_DIRECTORY ${folder})

  set(headers)
  set(sources)
  set(generated_headers)
  foreach(header ${ARGN})
    cmake_path(ABSOLUTE_PATH header BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    cmake_path(GET header STEM stem)
    list(APPEND headers ${header})
    list(APPEND sources ${folder}/${stem}.gen.cpp)
    list(APPEND generated_headers ${folder}/${stem}.generated.h)
  endforeach()

  get_target_property(include_folders ${target} INCLUDE_DIRECTORIES)
  set(roots)
  foreach(include_folder ${include_folders})
    if(NOT include_folder MATCHES "\\$<")
      cmake_path(ABSOLUTE_PATH include_folder BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
      list(APPEND roots --root ${include_folder})
    endif()
  endforeach()

  get_property(used_manifests GLOBAL PROPERTY HEADER_TOOL_MANIFESTS)
  set(uses)
  foreach(used_manifest ${used_manifests})
    list(APPEND uses --use ${used_manifest})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY HEADER_TOOL_MANIFESTS ${manifest})
  set_target_properties(${target} PROPERTIES HEADER_TOOL_MANIFEST ${manifest})

  string(TOUPPER ${target} upper_target)
  add_custom_command(
    OUTPUT ${stamp}
    BYPRODUCTS ${manifest} ${sources} ${generated_headers}
    COMMAND HeaderTool --module ${target} --api ${upper_target}_API --output ${folder} --manifest ${manifest}
            ${roots} ${uses} ${headers}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS HeaderTool ${headers} ${used_manifests}
    COMMENT "Reading the reflected headers of ${target}"
    VERBATIM)
  add_custom_target(${target}HeaderTool DEPENDS ${stamp})
  add_dependencies(${target} ${target}HeaderTool)
  add_dependencies(GeneratedHeaders ${target}HeaderTool)
  target_sources(${target} PRIVATE ${sources})
  target_include_directories(${target} PUBLIC ${folder})
endfunction()
