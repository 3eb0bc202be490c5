# Compiles the sources on Debian as Visual C++ would: clang in its mode and with its ABI, LLVM's C++
# library, and Wine's headers in place of the Windows SDK and of the C run time. Nothing can be linked.
# What the project gives to Visual C++ must be known to clang in this mode, or the check fails.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
# Otherwise CMake would find these two functions here, because it links none of its test programs.
set(CMAKE_HAVE_PTHREADS_CREATE FALSE CACHE BOOL "")
set(CMAKE_HAVE_PTHREAD_CREATE FALSE CACHE BOOL "")

set(llvm /usr/lib/llvm-19)
set(CMAKE_C_COMPILER ${llvm}/bin/clang-cl)
set(CMAKE_CXX_COMPILER ${llvm}/bin/clang-cl)
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_AR ${llvm}/bin/llvm-lib CACHE FILEPATH "")
set(CMAKE_RC_COMPILER ${llvm}/bin/llvm-rc)
set(CMAKE_RC_FLAGS_INIT "-I/usr/include/wine/wine/windows")
set(CMAKE_USER_MAKE_RULES_OVERRIDE ${CMAKE_CURRENT_LIST_DIR}/no_linking.cmake)

# The caller puts some headers there that Wine has in another form, or not at all.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PLENX_CHECK_HEADERS)

set(headers)
foreach(folder IN ITEMS
    ${PLENX_CHECK_HEADERS} ${CMAKE_CURRENT_LIST_DIR} ${llvm}/include/c++/v1 ${llvm}/lib/clang/19/include
    /usr/include/wine/wine/msvcrt /usr/include/wine/wine/windows)
  string(APPEND headers " -imsvc ${folder}")
endforeach()

# Visual C++ has more warnings at level 4 than clang.
string(CONCAT check "-fmsc-version=1944 /X -nobuiltininc${headers} /FI${CMAKE_CURRENT_LIST_DIR}/gnu_words.h /FIgaps.h /WX -Wno-pragma-pack"
  " -Wmicrosoft -Wshorten-64-to-32 -Wimplicit-int-conversion -Wsign-compare"
  " -D_UCRT -D_MSVCR_VER=140 -DWINE_UNICODE_NATIVE -DWINE_NO_STRICT_PROTOTYPES"
  " -D__MINGW_EXTENSION="
  " -D_LIBCPP_NO_VCRUNTIME -D_LIBCPP_DISABLE_DEPRECATION_WARNINGS")
file(STRINGS /usr/include/wine/wine/msvcrt/time.h has_new_times REGEX "struct timespec$")
if(has_new_times)
  string(APPEND check " -DPLENX_WINE_IS_NEW")
endif()
set(CMAKE_C_FLAGS_INIT "${check}")
set(CMAKE_CXX_FLAGS_INIT "${check} -Wnon-virtual-dtor -Woverloaded-virtual")
foreach(language IN ITEMS C CXX)
  set(CMAKE_${language}_FLAGS_RELWITHDEBINFO "/Od" CACHE STRING "")
endforeach()
