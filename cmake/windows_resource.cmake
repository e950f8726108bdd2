# add_windows_resource(program DESCRIPTION): icon, version and manifest of a program; nothing elsewhere than on Windows.
function(add_windows_resource PROGRAM PROGRAM_DESCRIPTION)
  if(NOT WIN32)
    return()
  endif()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${resource} @ONLY)
  target_sources(${PROGRAM} PRIVATE ${resource})
  set_source_files_properties(${resource} PROPERTIES OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/packaging/windows/qdm-editor.ico;${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest")
endfunction()
