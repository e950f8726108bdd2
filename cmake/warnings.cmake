# Every target of the project links this; warnings are errors everywhere.
add_library(qdm_warnings INTERFACE)
target_compile_options(qdm_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wimplicit-fallthrough -Wformat=2 -Werror)
# GCC 12 sees an overlap in every optimised concatenation of short strings (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(qdm_warnings INTERFACE -Wno-restrict)
endif()
