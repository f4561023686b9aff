# murmelix_resources(TARGET DESCRIPTION TEXT ICON NAME [ADMINISTRATOR] [PER_MONITOR]): a Windows program's manifest, version and icon
# (resource 1: NAME.ico of the assets, where they are built). Controls have the system's visual styles, and pixels are
# those of the screen: programs scale what they draw themselves. The program runs as who starts it; ADMINISTRATOR is for
# one that writes what belongs to the machine. With PER_MONITOR it hears when the resolution of the screen changes. Saying either outright keeps Windows from guessing by the program's name.
if(WIN32)
  enable_language(RC)
endif()
set(MURMELIX_RESOURCE_TEMPLATES ${CMAKE_CURRENT_LIST_DIR}/resources)

function(murmelix_resources target)
  cmake_parse_arguments(ARG "ADMINISTRATOR;PER_MONITOR" "DESCRIPTION;ICON" "" ${ARGN})
  set(level asInvoker)
  if(ARG_ADMINISTRATOR)
    set(level requireAdministrator)
  endif()
  set(awareness system)
  if(ARG_PER_MONITOR)
    set(awareness "PerMonitorV2, system")
  endif()
  set(icon "${MURMELIX_ASSETS}/icons/${ARG_ICON}.ico")
  set(icon_line "")
  if(EXISTS "${icon}")
    set(icon_line "1 ICON \"${icon}\"")
  endif()
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/resources)
  configure_file(${MURMELIX_RESOURCE_TEMPLATES}/program.manifest.in ${folder}/${target}.manifest @ONLY)
  configure_file(${MURMELIX_RESOURCE_TEMPLATES}/program.rc.in ${folder}/${target}.rc @ONLY)
  if(icon_line)
    set_source_files_properties(${folder}/${target}.rc PROPERTIES
      OBJECT_DEPENDS "${icon};${folder}/${target}.manifest")
  endif()
  target_sources(${target} PRIVATE ${folder}/${target}.rc)
endfunction()
