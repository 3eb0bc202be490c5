# Makes the same sources give the same bytes, in any folder and at any time. gdb finds the sources
# with: set substitute-path /plenxsdk <folder of the sources>. Visual C++ keeps the folder in its symbols.

if(MSVC)
  add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:/Brepro>)
  add_link_options(/Brepro /incremental:no)
  return()
endif()

if(NOT PLENX_COVERAGE)
  # ccache gives the compiler paths relative to the build folder, which must end in the same names. The
  # last option that fits counts, because the build folder may lie in the source folder.
  cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY "${CMAKE_BINARY_DIR}"
    OUTPUT_VARIABLE relative_source)
  add_compile_options(
    "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-ffile-prefix-map==/plenxsdk/build/;-ffile-prefix-map=/=/>"
    -ffile-prefix-map=${relative_source}=/plenxsdk
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=/plenxsdk
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=/plenxsdk/build)
endif()
add_link_options(-Wl,--no-insert-timestamp)
