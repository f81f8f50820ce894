# One set of compiler rules for everything that is engine code: the host and the plugin. They are those of the engine's
# own build (no exceptions, no RTTI, shadowing is an error), so that what compiles here compiles there.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -gline-tables-only -fno-omit-frame-pointer")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -gline-tables-only")

option(HOST_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
set(HOST_FLAVOUR "dev" CACHE STRING "Name of this build: it tells the plugin binaries of several builds apart")

option(HOST_BATCHES "Compile several sources of a module at once, as the engine's own build does" ON)

# compile_in_batches(<target> <size>): for what is built often from nothing and seldom changed file by file. The plugin is
# not: a touched source of it is compiled alone, and includes what it uses.
function(compile_in_batches target size)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${HOST_BATCHES} UNITY_BUILD_BATCH_SIZE ${size})
endfunction()

# For code that runs once from top to bottom, such as tests: what optimising costs the build, no run of it saves.
function(compile_without_optimising target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:Debug>:-O0>)
endfunction()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
endif()

find_program(LLD_PROGRAM ld.lld)
if(LLD_PROGRAM)
  add_link_options(-fuse-ld=lld)
endif()

# Precompiled headers carry no time stamp, so that ccache can serve them after a fresh clone.
add_compile_options("SHELL:-Xclang -fno-pch-timestamp")

if(HOST_SANITIZE)
  # The runtime is shared, so that the modules link with -z defs and a plugin can be loaded into the instrumented host.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-sanitize=vptr,function -shared-libasan)
  add_link_options(-fsanitize=address,undefined -shared-libasan)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libclang_rt.asan-x86_64.so
    OUTPUT_VARIABLE asan_runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
  get_filename_component(asan_runtime_folder ${asan_runtime} DIRECTORY)
  list(APPEND CMAKE_BUILD_RPATH ${asan_runtime_folder})
endif()

option(HOST_COVERAGE "Count which functions run" OFF)
if(HOST_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
endif()

add_library(EngineCompileRules INTERFACE)
target_compile_options(EngineCompileRules INTERFACE
  -fno-exceptions
  -fno-rtti
  -Wall
  -Wextra
  -Werror
  -Wshadow
  -Wsuggest-override
  -Winconsistent-missing-override
  -Woverloaded-virtual
  -Wrange-loop-construct
  -Wno-unused-parameter)
