# What an installation holds. The program looks for its help, licence and examples beside itself, so all of them share one folder: the
# root of the installation on Windows, lib/qdm-editor elsewhere, with links to the programs in bin.
include(GNUInstallDirs)

if(WIN32)
  set(program_folder .)
else()
  set(program_folder lib/qdm-editor)
endif()

install(TARGETS qdm-editor qdm qdm-line RUNTIME DESTINATION ${program_folder})
if(TARGET help_file)
  install(FILES ${PROJECT_BINARY_DIR}/bin/qdm.chm DESTINATION ${program_folder})
endif()
install(FILES LICENSE DESTINATION ${program_folder} RENAME licence.txt)
install(DIRECTORY examples DESTINATION ${program_folder}
        FILES_MATCHING PATTERN *.BVC PATTERN *.BVD PATTERN *.DEF PATTERN README.md)

if(NOT WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/install_desktop.cmake)
endif()
