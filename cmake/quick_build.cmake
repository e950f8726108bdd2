# What makes a debug build of everything quick, where it is to be had: GCC collects garbage only once a file takes half a gigabyte, which
# few do, and mold links some thirty programs in a fifth of the time that the system's own linker takes.
if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT CMAKE_CROSSCOMPILING)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(--param=ggc-min-heapsize=524288)  # KiB
  endif()
  find_program(MOLD mold)
  if(MOLD)
    add_link_options(-fuse-ld=mold)
  endif()
endif()
