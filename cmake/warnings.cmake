# Every target of the project links this; warnings are errors everywhere.
add_library(qdm_warnings INTERFACE)
target_compile_options(qdm_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wimplicit-fallthrough -Wformat=2 -Werror)
# Optimising, GCC 12 sees overlaps in concatenations of short strings (its bug 105651) and reads of empty optionals or
# behind short vectors that are not there. The sanitizers and clang-tidy look for the real ones.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(qdm_warnings INTERFACE -Wno-restrict -Wno-maybe-uninitialized -Wno-stringop-overread)
endif()
