# Every target of the project links this; warnings are errors everywhere.
add_library(qdm_warnings INTERFACE)
target_compile_options(qdm_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wimplicit-fallthrough -Wformat=2 -Werror)
