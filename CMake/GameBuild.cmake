# write_editor_build_description()
#
# Writes bin/HostEditor.build.json: what a build of a game module needs to know of this build of the editor. The editor
# reads it when it compiles the C++ modules of a project (Host/HotReload). Called after the last host module.

function(json_text out text)
  string(REPLACE "\\" "\\\\" text "${text}")
  string(REPLACE "\"" "\\\"" text "${text}")
  set(${out} "\"${text}\"" PARENT_SCOPE)
endfunction()

# json_texts(<out> <text>...): the inside of an array
function(json_texts out)
  set(quoted)
  foreach(text ${ARGN})
    json_text(text "${text}")
    list(APPEND quoted "${text}")
  endforeach()
  list(JOIN quoted ", " joined)
  set(${out} "${joined}" PARENT_SCOPE)
endfunction()

# "SHELL:-a b" stands for two arguments.
function(split_shell_options out)
  set(options)
  foreach(option ${ARGN})
    if(option MATCHES "^SHELL:(.*)$")
      separate_arguments(option UNIX_COMMAND "${CMAKE_MATCH_1}")
    endif()
    list(APPEND options ${option})
  endforeach()
  set(${out} "${options}" PARENT_SCOPE)
endfunction()

function(module_description out name)
  get_target_property(includes ${name} INTERFACE_OWN_INCLUDES)
  get_target_property(definitions ${name} INTERFACE_OWN_DEFINITIONS)
  get_target_property(types ${name} HEADER_TOOL_MANIFEST)
  if(NOT types)
    set(types)
  endif()
  json_texts(includes ${includes})
  json_texts(definitions ${definitions})
  json_text(types "${types}")
  string(CONCAT description
    "\t\t\"${name}\": {\n"
    "\t\t\t\"IncludePaths\": [${includes}],\n"
    "\t\t\t\"Definitions\": [${definitions}],\n"
    "\t\t\t\"Library\": \"$<TARGET_FILE:${name}>\",\n"
    "\t\t\t\"Types\": ${types}\n"
    "\t\t}")
  set(${out} "${description}" PARENT_SCOPE)
endfunction()

function(write_editor_build_description)
  get_directory_property(directory_compile_options COMPILE_OPTIONS)
  get_directory_property(directory_link_options LINK_OPTIONS)
  get_target_property(rules EngineCompileRules INTERFACE_COMPILE_OPTIONS)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
  separate_arguments(flags UNIX_COMMAND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}")
  split_shell_options(compile_flags ${flags} -std=c++20 -fPIC ${directory_compile_options} -fvisibility=hidden ${rules})
  split_shell_options(link_flags -shared ${directory_link_options} -Wl,-z,defs)

  set(modules)
  get_property(names GLOBAL PROPERTY HOST_MODULES)
  foreach(name ${names})
    module_description(description ${name})
    list(APPEND modules "${description}")
  endforeach()
  list(JOIN modules ",\n" modules)

  find_program(NINJA_PROGRAM ninja REQUIRED)
  json_texts(compile_flags ${compile_flags})
  json_texts(link_flags ${link_flags})
  json_texts(launcher ${CCACHE_PROGRAM})
  set(precompiled ${CMAKE_CURRENT_BINARY_DIR}/HotReload/CMakeFiles/GameModuleHeader.dir/cmake_pch.hxx)
  file(GENERATE OUTPUT ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/HostEditor.build.json CONTENT "{
\t\"Ninja\": \"${NINJA_PROGRAM}\",
\t\"Compiler\": \"${CMAKE_CXX_COMPILER}\",
\t\"CompilerLauncher\": [${launcher}],
\t\"CompileFlags\": [${compile_flags}],
\t\"LinkFlags\": [${link_flags}],
\t\"HeaderTool\": \"$<TARGET_FILE:HeaderTool>\",
\t\"PrecompiledHeader\": \"${precompiled}\",
\t\"Modules\": {
${modules}
\t}
}
")
endfunction()
