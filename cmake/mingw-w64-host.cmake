# Cross-builds a host of plenxsdk on Debian for 64-bit Windows, with the compiler of the library: GCC
# with POSIX threads. It finds plenxsdk in the package that contains this file.

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
