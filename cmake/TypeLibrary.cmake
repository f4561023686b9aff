# murmelix_type_library(TARGET NAME.idl): makes a type library of a description in IDL. The library TARGET gets a
# com::Interface of each of its interfaces, for the objects that serve them (interfaces.py); programs that link it carry
# the type library as their resource, and can include NAME.h, the interfaces as C++ calls them.
if(NOT WIN32)
  return()
endif()
find_program(MURMELIX_WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(MURMELIX_IDL ${PROJECT_SOURCE_DIR}/common/com/idl)
set(MURMELIX_INTERFACES ${CMAKE_CURRENT_LIST_DIR}/interfaces.py)
set(MURMELIX_UNDATED ${CMAKE_CURRENT_LIST_DIR}/undated.py)

function(murmelix_type_library target description)
  cmake_path(GET description STEM name)
  cmake_path(ABSOLUTE_PATH description)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/type_library)
  file(MAKE_DIRECTORY ${folder})
  set(base ${MURMELIX_IDL}/oaidl.idl ${MURMELIX_IDL}/stdole2.idl)
  set(widl ${MURMELIX_WIDL} -I${MURMELIX_IDL} -L${folder})
  add_custom_command(
    OUTPUT ${folder}/${name}.tlb ${folder}/${name}.h ${folder}/${name}_interfaces.cpp
    COMMAND ${widl} -t -o ${folder}/stdole2.tlb ${MURMELIX_IDL}/stdole2.idl
    COMMAND ${widl} -t -o ${folder}/${name}.tlb ${description}
    COMMAND ${Python3_EXECUTABLE} -B ${MURMELIX_UNDATED} ${folder}/${name}.tlb
    COMMAND ${widl} -h -o ${folder}/${name}.h ${description}
    COMMAND ${Python3_EXECUTABLE} -B ${MURMELIX_INTERFACES} ${description} ${folder}/${name}_interfaces.cpp
    DEPENDS ${description} ${base} ${MURMELIX_INTERFACES} ${MURMELIX_UNDATED}
    COMMENT "Making the type library ${name}.tlb"
    VERBATIM)
  target_sources(${target} PRIVATE ${folder}/${name}_interfaces.cpp)
  target_include_directories(${target} SYSTEM PUBLIC ${folder})
  # A resource of the program, not of the library: a linker drops those of libraries.
  file(CONFIGURE OUTPUT ${folder}/${name}.rc CONTENT "1 TYPELIB \"@folder@/@name@.tlb\"\n" @ONLY)
  set_source_files_properties(${folder}/${name}.rc PROPERTIES OBJECT_DEPENDS ${folder}/${name}.tlb)
  add_custom_target(${target}_type_library DEPENDS ${folder}/${name}.tlb)
  target_sources(${target} INTERFACE ${folder}/${name}.rc)
endfunction()
