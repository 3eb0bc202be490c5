# Cross-builds a host of plenxsdk on Debian: 64-bit Windows, GCC with POSIX threads, as the library
# was built. It finds plenxsdk in the package that it lies in.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

get_filename_component(package "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)
list(APPEND CMAKE_PREFIX_PATH "${package}")
set(CMAKE_FIND_ROOT_PATH "/usr/${triple}" "${package}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
