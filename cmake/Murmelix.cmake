# What every target of the project shares, and the two functions that make targets.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE OFF)

# For those with several clones; a first build takes a tenth longer with it.
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(murmelix_options INTERFACE)
target_include_directories(murmelix_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(murmelix_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fno-strict-aliasing)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # This release warns of overlapping and of endless copies inside its own string concatenation.
  target_compile_options(murmelix_options INTERFACE -Wno-restrict -Wno-stringop-overflow)
endif()
if(MURMELIX_SANITIZE)
  # What is left on the stack by a return is not looked for: each exception would take a while.
  # The fuzz targets follow by which ways they have come.
  target_compile_options(murmelix_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
    -fsanitize-address-use-after-return=never)
  target_link_options(murmelix_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  set(MURMELIX_ASSETS ${PROJECT_SOURCE_DIR}/build/host/assets CACHE PATH "Where the preset host has built the assets")
  target_compile_definitions(murmelix_options INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)
  target_compile_options(murmelix_options INTERFACE -ffunction-sections -fdata-sections)
  # The same sources make the same bytes: no program tells when it was linked.
  target_link_options(murmelix_options INTERFACE -static -Wl,--gc-sections,--no-insert-timestamp $<$<CONFIG:Release>:-s>)
endif()

# Several sources of a library are compiled as one, which takes half the time. So what a source has for itself, in its nameless
# namespace, has a name that no other source of the library uses. The presets win32 and win32-check compile each alone,
# and so show that it includes what it needs.
option(MURMELIX_JOIN_SOURCES "Compile several sources of a library at once" OFF)
if(MURMELIX_JOIN_SOURCES AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # The compiler takes a class that a source hides, and that has members of its nameless namespace, for one of a header.
  target_compile_options(murmelix_options INTERFACE -Wno-subobject-linkage)
elseif(MURMELIX_JOIN_SOURCES)
  # A local name may be one of another source's nameless namespace.
  target_compile_options(murmelix_options INTERFACE -Wno-shadow)
endif()

add_library(precompiled OBJECT EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/cmake/precompiled.cpp)
target_link_libraries(precompiled PRIVATE murmelix_options)
target_precompile_headers(precompiled PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled.h)
if(WIN32)
  add_library(precompiled_windows OBJECT EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/cmake/precompiled_windows.cpp)
  target_link_libraries(precompiled_windows PRIVATE murmelix_options)
  target_precompile_headers(precompiled_windows PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled_windows.h)
endif()

# murmelix_library(NAME [WINDOWS] SOURCES… LINK…): a static library of the sources, with the project's options. WINDOWS
# precompiles the system's headers, too: it is for libraries most of whose sources include them.
function(murmelix_library name)
  cmake_parse_arguments(ARG "WINDOWS" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC murmelix_options ${ARG_LINK})
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${MURMELIX_JOIN_SOURCES} UNITY_BUILD_BATCH_SIZE 8)
  if(ARG_WINDOWS AND TARGET precompiled_windows)
    target_precompile_headers(${name} REUSE_FROM precompiled_windows)
  else()
    target_precompile_headers(${name} REUSE_FROM precompiled)
  endif()
endfunction()

# murmelix_program(NAME [GUI] SOURCES… LINK…): an executable; GUI links it for the Windows subsystem, entry ui/program.h.
function(murmelix_program name)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE murmelix_options ${ARG_LINK})
  if(WIN32 AND ARG_GUI)
    # The entry lies in the library ui, which is searched before the system's start-up code asks for it.
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
      set(entry wWinMain)
    else()
      set(entry _wWinMain@16)
    endif()
    target_link_options(${name} PRIVATE -mwindows -municode -Wl,-u,${entry})
  elseif(WIN32)
    target_link_options(${name} PRIVATE -mconsole)
  endif()
endfunction()

include(${CMAKE_CURRENT_LIST_DIR}/Resources.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/TypeLibrary.cmake)
