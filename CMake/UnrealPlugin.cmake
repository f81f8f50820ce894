# unreal_plugin(<file.uplugin>)
#
# Builds the modules of a plugin from what the engine's own build reads: the descriptor names the modules, <Module>.Build.cs
# names what each depends on, and every source below the module's folder belongs to it. Only the listed modules' include
# folders and libraries are given, so that a header or a symbol of an unlisted module fails here as it would there.
#
# The library goes to <plugin>/Binaries/Linux beside a manifest of the build's flavour, where the host looks for it.
function(unreal_plugin descriptor)
  get_filename_component(plugin_folder ${descriptor} DIRECTORY)
  file(READ ${descriptor} descriptor_text)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${descriptor})
  string(JSON module_count LENGTH ${descriptor_text} Modules)
  math(EXPR last_module "${module_count} - 1")
  set(libraries)
  foreach(index RANGE ${last_module})
    string(JSON module GET ${descriptor_text} Modules ${index} Name)
    unreal_module(${module} ${plugin_folder})
    list(APPEND libraries "\t\t\"${module}\": \"libHostEditor-${module}-${HOST_FLAVOUR}.so\"")
  endforeach()
  list(JOIN libraries ",\n" libraries)
  file(CONFIGURE OUTPUT ${plugin_folder}/Binaries/Linux/HostEditor-${HOST_FLAVOUR}.modules
    CONTENT "{\n\t\"Modules\":\n\t{\n${libraries}\n\t}\n}\n" @ONLY)
endfunction()

function(unreal_module module plugin_folder)
  set(folder ${plugin_folder}/Source/${module})
  read_build_cs_modules(${folder}/${module}.Build.cs needed_modules)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${folder}/*.h)

  add_library(${module} SHARED ${sources})
  target_include_directories(${module} PRIVATE ${folder}/Public ${folder}/Private)
  read_build_cs_include_paths(${folder}/${module}.Build.cs include_paths)
  target_include_directories(${module} PRIVATE ${include_paths})
  set(linked_modules)
  foreach(needed ${needed_modules})
    if(NOT TARGET ${needed})
      message(FATAL_ERROR "${folder}/${module}.Build.cs lists ${needed}, which the host does not have")
    endif()
    target_include_directories(${module} PRIVATE $<TARGET_PROPERTY:${needed},INTERFACE_OWN_INCLUDES>)
    target_compile_definitions(${module} PRIVATE $<TARGET_PROPERTY:${needed},INTERFACE_OWN_DEFINITIONS>)
    list(APPEND linked_modules $<TARGET_LINKER_FILE:${needed}>)
    add_dependencies(${module} ${needed})
  endforeach()
  target_link_libraries(${module} PRIVATE EngineCompileRules ${linked_modules})
  target_link_options(${module} PRIVATE -Wl,-z,defs)

  string(TOUPPER ${module} upper_module)
  target_compile_options(${module} PRIVATE -fvisibility=hidden)
  target_compile_definitions(${module} PRIVATE
    "${upper_module}_API=__attribute__((visibility(\"default\")))" UE_MODULE_NAME="${module}")
  read_build_cs_optimises(${folder}/${module}.Build.cs optimises)
  if(optimises)
    engine_precompiled_header(${module} GameModuleHeader)
  else()
    engine_precompiled_header(${module})
    compile_without_optimising(${module})
    compile_in_batches(${module} 8)
  endif()

  # A header that includes a generated header without need, or needs one that it does not include, is for HeaderTool to
  # reject.
  # For other plugins' modules that list this one.
  set_target_properties(${module} PROPERTIES
    INTERFACE_OWN_INCLUDES "${folder}/Public;${CMAKE_BINARY_DIR}/Generated/${module}"
    INTERFACE_OWN_DEFINITIONS ${upper_module}_API=)

  set(reflected)
  foreach(header ${headers})
    file(STRINGS ${header} reflected_lines REGEX "^#include \".*\\.generated\\.h\"|^[ \t]*U(CLASS|STRUCT|ENUM|INTERFACE)\\(")
    if(reflected_lines)
      list(APPEND reflected ${header})
    endif()
  endforeach()
  if(reflected)
    run_header_tool(${module} ${reflected})
  endif()

  set_target_properties(${module} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${plugin_folder}/Binaries/Linux OUTPUT_NAME HostEditor-${module}-${HOST_FLAVOUR})
endfunction()

# Reads the strings of PublicDependencyModuleNames and PrivateDependencyModuleNames out of a Build.cs.
function(read_build_cs_modules build_cs out_modules)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${build_cs})
  file(READ ${build_cs} text)
  string(REGEX REPLACE "//[^\n]*" "" text "${text}")
  string(REGEX MATCHALL "DependencyModuleNames\\.Add(Range)?\\([^;]*;" statements "${text}")
  set(modules)
  foreach(statement ${statements})
    string(REGEX MATCHALL "\"[A-Za-z0-9_]+\"" names "${statement}")
    foreach(name ${names})
      string(REPLACE "\"" "" name ${name})
      list(APPEND modules ${name})
    endforeach()
  endforeach()
  set(${out_modules} ${modules} PARENT_SCOPE)
endfunction()

# Tests say that they are not worth optimising: OptimizeCode = CodeOptimization.Never.
function(read_build_cs_optimises build_cs out_optimises)
  file(STRINGS ${build_cs} never REGEX "OptimizeCode = CodeOptimization\\.Never;")
  if(never)
    set(${out_optimises} FALSE PARENT_SCOPE)
  else()
    set(${out_optimises} TRUE PARENT_SCOPE)
  endif()
endfunction()

# Reads PrivateIncludePaths.Add(Path.Combine(ModuleDirectory, "...", ...)) out of a Build.cs.
function(read_build_cs_include_paths build_cs out_paths)
  get_filename_component(folder ${build_cs} DIRECTORY)
  file(READ ${build_cs} text)
  string(REGEX MATCHALL "PrivateIncludePaths\\.Add\\(Path\\.Combine\\(ModuleDirectory,[^;]*;" statements "${text}")
  set(paths)
  foreach(statement ${statements})
    string(REGEX MATCHALL "\"[^\"]+\"" names "${statement}")
    set(path ${folder})
    foreach(name ${names})
      string(REPLACE "\"" "" name ${name})
      string(APPEND path "/${name}")
    endforeach()
    cmake_path(NORMAL_PATH path)
    list(APPEND paths ${path})
  endforeach()
  set(${out_paths} ${paths} PARENT_SCOPE)
endfunction()
