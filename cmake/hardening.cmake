# In every build but a debug one: containers that are indexed past their end stop the program, and a large frame cannot step over
# the guard page of a stack. Windows' own stack probes do the latter there.
add_compile_definitions($<$<NOT:$<CONFIG:Debug>>:_GLIBCXX_ASSERTIONS>)
if(NOT WIN32)
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-fstack-clash-protection>)
endif()
