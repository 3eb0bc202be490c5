# All targets of this project share these settings and functions.

find_package(Threads REQUIRED)

# An unknown compiler may have more warnings, which must not fail a build.
option(PLENX_WERROR "Warnings about our own sources are errors; not with MSVC" OFF)
set(plenx_werror $<$<BOOL:${PLENX_WERROR}>:-Werror>)

# The warnings for our own sources. Nobody has tried MSVC's yet. It would warn of parameters named like
# members (4458), of imported functions in tables (4232), and of the deprecated converter of texts, whose
# behaviour we rely on.
add_library(plenx_warnings INTERFACE)
if(MSVC)
  target_compile_options(plenx_warnings INTERFACE /W4 /wd4458 /wd4232 /utf-8 /permissive-)
  target_compile_definitions(plenx_warnings INTERFACE
    _SILENCE_CXX17_CODECVT_HEADER_DEPRECATION_WARNING)
  # Here the library is built by the compiler of its hosts.
  add_compile_definitions(PLENXSDK_BUILT_BY_VISUAL_CPP)
else()
  target_compile_options(plenx_warnings INTERFACE -Wall -Wextra -Wpedantic ${plenx_werror})
endif()

if(WIN32)
  # For Windows 7 and later. UNICODE, because the narrow macros of windows.h collide with our names.
  add_compile_definitions(_WIN32_WINNT=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
  set(CMAKE_SHARED_MODULE_PREFIX "")
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  include(reproducible)
  include(hardening)
  target_link_libraries(plenx_warnings INTERFACE plenx_hardening)
endif()

set(PLENX_HEADERS /usr/include CACHE PATH "Holds the folders of header-only packages")

# plenx_system_headers(<target> <package>...): offers single header-only packages of the
# system to a target. The system's include folder itself must not be used in a cross-build:
# it would bring the Linux headers along.
function(plenx_system_headers target)
  set(folder ${PROJECT_BINARY_DIR}/system-headers)
  file(MAKE_DIRECTORY ${folder})
  foreach(package IN LISTS ARGN)
    if(NOT EXISTS ${PLENX_HEADERS}/${package})
      message(FATAL_ERROR "${PLENX_HEADERS}/${package} is missing; on Debian ./plenx installs it, "
        "elsewhere set PLENX_HEADERS to the folder that holds it")
    endif()
    if(NOT EXISTS ${folder}/${package})
      if(CMAKE_HOST_WIN32)  # where links need a right of their own
        file(COPY ${PLENX_HEADERS}/${package} DESTINATION ${folder})
      else()
        file(CREATE_LINK ${PLENX_HEADERS}/${package} ${folder}/${package} SYMBOLIC)
      endif()
    endif()
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()

# Builds GoogleTest from Debian's source with our own flags, but without optimisation and debug
# information, because a quick build is worth more here.
macro(plenx_googletest)
  if(NOT TARGET gtest)
    set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    foreach(part IN ITEMS gtest gmock gmock_main)
      target_compile_options(${part} PRIVATE -O0 -g0)
    endforeach()
  endif()
endmacro()

# plenx_version_resource(<target> <description>): gives a Windows binary its VERSIONINFO.
function(plenx_version_resource target version_description)
  get_target_property(type ${target} TYPE)
  set(version_file_type VFT_APP)
  set(version_name ${target}.exe)
  if(NOT type STREQUAL EXECUTABLE)
    set(version_file_type VFT_DLL)
    set(version_name ${target}.dll)
  endif()
  set(resource ${PROJECT_BINARY_DIR}/generated/${target}-version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()

# plenx_counted(<target>): the target's lines and branches are counted if PLENX_COVERAGE is on.
function(plenx_counted target)
  if(PLENX_COVERAGE)
    # The counts must be atomic. On Linux -pthread means that too, and ccache knows only -pthread.
    target_compile_options(${target} PRIVATE
      --coverage $<IF:$<BOOL:${WIN32}>,-fprofile-update=atomic,-pthread>)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()

# plenx_widl(<variable>): makes the IDL compiler's stubs of both RPC interfaces in a folder of the build
# and sets the variable to that folder. All names in them differ from ours, so that one program can link
# both.
function(plenx_widl variable)
  find_program(PLENX_WIDL NAMES x86_64-w64-mingw32-widl REQUIRED)
  set(stubs ${CMAKE_CURRENT_BINARY_DIR}/widl)
  file(MAKE_DIRECTORY ${stubs})
  set(widl ${PLENX_WIDL} --prefix-client=WidlCall_ --prefix-server=WidlServe_)
  foreach(name service manager)
    set(idl ${PROJECT_SOURCE_DIR}/src/rpc/interface/${name}.idl)
    add_custom_command(
      OUTPUT ${stubs}/${name}.h ${stubs}/${name}_c.c ${stubs}/${name}_s.c
      COMMAND ${widl} -h -H ${stubs}/${name}.h ${idl}
      COMMAND ${widl} -c -C ${stubs}/${name}_c.c ${idl}
      COMMAND ${widl} -s -S ${stubs}/${name}_s.c ${idl}
      WORKING_DIRECTORY ${stubs}
      DEPENDS ${idl}
      COMMENT "Compiling ${name}.idl")
  endforeach()
  set(${variable} ${stubs} PARENT_SCOPE)
endfunction()
