# Cross-builds for 64-bit Windows: C++ with Debian's g++ (posix threads), and C with clang, because g++
# has no structured exception handling. Their objects can be linked together.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER clang)
set(CMAKE_C_COMPILER_TARGET ${triple})
set(CMAKE_C_COMPILER_WORKS TRUE)  # it only compiles, and g++ links
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_AR ${triple}-ar CACHE FILEPATH "")
set(CMAKE_RANLIB ${triple}-ranlib CACHE FILEPATH "")
set(CMAKE_STRIP ${triple}-strip CACHE FILEPATH "")
set(CMAKE_DLLTOOL ${triple}-dlltool CACHE FILEPATH "")

set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
