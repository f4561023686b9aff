# What a user has: `cmake --install build/win64 --prefix build/Murmelix` fills a program directory. Drawings and sounds are
# those that the preset host has built. The target `programs` builds what is installed.
if(NOT WIN32)
  return()
endif()
if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX ${CMAKE_BINARY_DIR}/staged CACHE PATH "Where the program directory is made" FORCE)
endif()

# The program, what it starts, and the Messenger client.
add_custom_target(programs)
foreach(program Murmelix MSAGENT tv_enua updater MessengerClient)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION .)
    add_dependencies(programs ${program})
  endif()
endforeach()
install(DIRECTORY ${MURMELIX_ASSETS}/sounds DESTINATION . FILES_MATCHING PATTERN "*.wav")
install(DIRECTORY DESTINATION CharPics)
# Those of the others are fetched from the web site, as that of any character that is added.
foreach(name Brindle Ottoline)
  install(FILES ${MURMELIX_ASSETS}/portraits/${name}.gif DESTINATION CharPics)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/companions/messenger/demo/conversation.txt DESTINATION conversations)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION . RENAME LICENSE.txt)
# What MSAGENT.exe installs.
if(TARGET AgentServer)
  install(TARGETS AgentServer RUNTIME DESTINATION msagent)
  add_dependencies(programs AgentServer)
endif()
install(DIRECTORY ${MURMELIX_ASSETS}/chars DESTINATION msagent FILES_MATCHING PATTERN "*.acs")
