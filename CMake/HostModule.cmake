# host_module(<Name>
#   SOURCES       <file>...      relative to the module's folder
#   [REFLECTED    <header>...]   headers with UCLASS, USTRUCT or UENUM: HeaderTool reads them
#   [PUBLIC_NEEDS  <target>...]  modules whose headers the Public headers include
#   [PRIVATE_NEEDS <target>...]  modules and libraries that the sources use
#   [TESTS        <file>...]     GoogleTest sources, built into <Name>Tests
#   [OWN_HEADER])                its libraries bring compile options that HostHeader is not compiled with
#
# Public has the engine's headers; Internal those that the engine does not have, for host modules only.
#
# A module is a shared library of its own, as in the engine's modular build: what does not name the module it uses does
# not link.
function(host_module name)
  cmake_parse_arguments(arg "OWN_HEADER" "" "SOURCES;REFLECTED;PUBLIC_NEEDS;PRIVATE_NEEDS;TESTS" ${ARGN})

  add_library(${name} SHARED ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME Host-${name})
  target_include_directories(${name} PUBLIC Public PRIVATE Private)
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/Internal)
    target_include_directories(${name} PUBLIC Internal)
  endif()
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC_NEEDS} PRIVATE EngineCompileRules ${arg_PRIVATE_NEEDS})
  target_link_options(${name} PRIVATE -Wl,-z,defs)
  string(TOUPPER ${name} upper_name)
  target_compile_definitions(${name} PUBLIC ${upper_name}_API= PRIVATE UE_MODULE_NAME="${name}")
  if(arg_OWN_HEADER)
    engine_precompiled_header(${name})
  else()
    engine_precompiled_header(${name} HostHeader)
  endif()
  compile_in_batches(${name} 8)

  if(arg_REFLECTED)
    run_header_tool(${name} ${arg_REFLECTED})
  endif()

  # What a plugin gets that lists this module: its own folders, and nothing of the modules below.
  set(own_includes ${CMAKE_CURRENT_SOURCE_DIR}/Public)
  if(arg_REFLECTED)
    list(APPEND own_includes ${CMAKE_CURRENT_BINARY_DIR}/Generated/${name})
  endif()
  set_target_properties(${name} PROPERTIES
    INTERFACE_OWN_INCLUDES "${own_includes}" INTERFACE_OWN_DEFINITIONS ${upper_name}_API=)
  set_property(GLOBAL APPEND PROPERTY HOST_MODULES ${name})

  if(arg_TESTS)
    host_test(${name}Tests SOURCES ${arg_TESTS} NEEDS ${name} ${arg_PRIVATE_NEEDS} INCLUDES Private)
  endif()
endfunction()

# host_test(<Name> SOURCES <file>... NEEDS <target>... [INCLUDES <folder>...])
#
# Reflected test types are named by a run_header_tool(<Name> <header>...) behind it.
#
# A GoogleTest program that is started with the host's core set up (game thread, command line, log).
function(host_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;NEEDS;INCLUDES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${arg_INCLUDES})
  string(TOUPPER ${name} upper_name)
  target_compile_definitions(${name} PRIVATE ${upper_name}_API=)
  target_link_libraries(${name} PRIVATE EngineCompileRules HostTestMain ${arg_NEEDS})
  compile_in_batches(${name} 8)
  compile_without_optimising(${name})
  add_test(NAME ${name} COMMAND ${name} --gtest_output=xml:${CMAKE_BINARY_DIR}/TestResults/${name}.xml)
endfunction()

# engine_precompiled_header(<target> [<owner>]): every source of the target sees CoreMinimal.h, parsed once for all targets
# that are compiled like the owner: HostHeader, or GameModuleHeader for modules that hide their symbols. A target with
# other options, such as a program, has none.
function(engine_precompiled_header target)
  if(ARGC GREATER 1)
    target_precompile_headers(${target} REUSE_FROM ${ARGV1})
  else()
    target_precompile_headers(${target} PRIVATE <CoreMinimal.h>)
  endif()
endfunction()
