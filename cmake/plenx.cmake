# All targets of this project share these settings and functions.

find_package(Threads REQUIRED)

# An unknown compiler may have more warnings, which must not fail a build.
option(PLENX_WERROR "Warnings about our own sources are errors; not with MSVC" OFF)
set(plenx_werror $<$<BOOL:${PLENX_WERROR}>:-Werror>)

# The warnings for our own sources. Nobody has tried MSVC's yet. It would warn of parameters named like
# members (4458), of imported functions in tables (4232), of the deprecated text converter, whose
# behaviour we rely on, and of parts of the standard library for which Microsoft has its own.
add_library(plenx_warnings INTERFACE)
if(MSVC)
  target_compile_options(plenx_warnings INTERFACE
    /W4 /wd4458 /wd4232 /utf-8 /permissive-)
  target_compile_definitions(plenx_warnings INTERFACE
    _SILENCE_CXX17_CODECVT_HEADER_DEPRECATION_WARNING _CRT_SECURE_NO_WARNINGS)
  # Here the library is built by the compiler of its hosts.
  add_compile_definitions(PLENXSDK_BUILT_BY_VISUAL_CPP)
else()
  target_compile_options(plenx_warnings INTERFACE -Wall -Wextra -Wpedantic ${plenx_werror})
endif()

if(WIN32)
  # The programs are for Windows 7 and later. UNICODE is defined because the narrow macros of windows.h
  # collide with our names.
  add_compile_definitions(_WIN32_WINNT=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
  set(CMAKE_SHARED_MODULE_PREFIX "")
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  # Visual Studio would make a folder for each configuration in these.
  foreach(configuration IN LISTS CMAKE_CONFIGURATION_TYPES)
    string(TOUPPER ${configuration} configuration)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY_${configuration} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    set(CMAKE_LIBRARY_OUTPUT_DIRECTORY_${configuration} ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
    set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY_${configuration} ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY})
  endforeach()
  include(reproducible)
  include(hardening)
  # Wine maps a section that begins at a page of its file, and reads every other one when the program
  # starts, the debug information too. So plenxkit starts in 12 ms instead of 80.
  if(MINGW)
    add_link_options(-Wl,--file-alignment,4096)
  endif()
  target_link_libraries(plenx_warnings INTERFACE plenx_hardening)
endif()

set(headers /usr/include)
if(DEFINED VCPKG_INSTALLED_DIR)
  set(headers ${VCPKG_INSTALLED_DIR}/${VCPKG_TARGET_TRIPLET}/include)
endif()
set(PLENX_HEADERS ${headers} CACHE PATH "Holds the folders of header-only packages")

# plenx_system_headers(<target> <package>...): offers single header-only packages of the system to a
# target. The system's include folder itself must not be used in a cross-build: it would bring the Linux
# headers along. If a system header has two names, g++ puts the shorter one into the symbols. That one
# must be the package's own, even with paths relative to the build folder.
function(plenx_system_headers target)
  set(folder ${PROJECT_BINARY_DIR}/header-only-packages-of-the-system)
  file(MAKE_DIRECTORY ${folder})
  foreach(package IN LISTS ARGN)
    set(place ${PLENX_HEADERS}/${package})
    if(NOT EXISTS ${place})  # UTF8-CPP installs itself into a folder of its own
      set(place ${PLENX_HEADERS}/utf8cpp/${package})
    endif()
    if(NOT EXISTS ${place})
      message(FATAL_ERROR "${PLENX_HEADERS}/${package} is missing; on Debian ./plenx installs it, "
        "elsewhere set PLENX_HEADERS to the folder that holds it")
    endif()
    if(NOT EXISTS ${folder}/${package})
      if(CMAKE_HOST_WIN32)  # where making links needs a special right
        file(COPY ${place} DESTINATION ${folder})
      else()
        file(CREATE_LINK ${place} ${folder}/${package} SYMBOLIC)
      endif()
    endif()
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()

# Builds GoogleTest from Debian's source with our own flags, but without optimisation and debug
# information, because a quick build is worth more here. Where that source is missing, it uses the
# installed GoogleTest.
macro(plenx_googletest)
  if(NOT EXISTS /usr/src/googletest)
    find_package(GTest CONFIG REQUIRED)
  elseif(NOT TARGET gtest)
    set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    foreach(part IN ITEMS gtest gmock gmock_main)
      target_compile_options(${part} PRIVATE $<IF:$<BOOL:${MSVC}>,/w,-O0;-g0>)
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

# plenx_full_symbols(<target>): a host's developer wants more than line numbers, and the package has the
# symbols.
function(plenx_full_symbols target)
  if(NOT MSVC)  # which writes all of them in any case
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-g2>)
  endif()
endfunction()

# plenx_wide_main(<target>): the program begins with wmain.
function(plenx_wide_main target)
  if(MINGW)  # other linkers find it by themselves
    target_link_options(${target} PRIVATE -municode)
  endif()
endfunction()

# plenx_contain_run_time(<target>): the program runs in places without the DLLs of its run time, as a
# service does. Those of Visual C++ are installed for the whole system.
function(plenx_contain_run_time target)
  if(MINGW)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()

# plenx_export_marked_only(<target>): the DLL exports only what its headers mark.
function(plenx_export_marked_only target)
  if(MINGW)  # other linkers do so by themselves
    target_link_options(${target} PRIVATE -Wl,--exclude-all-symbols)
  endif()
endfunction()

# plenx_generated_sources(<target>): its sources come from the IDL compiler. They use structured
# exceptions, nobody can fix warnings in them, and nobody steps through them.
function(plenx_generated_sources target)
  target_compile_definitions(${target} PRIVATE USE_COMPILER_EXCEPTIONS)
  if(MSVC)
    target_compile_options(${target} PRIVATE /w)
  else()
    target_compile_options(${target} PRIVATE -w -fms-extensions -g0)
  endif()
endfunction()

# plenx_structured_exceptions(<source>...): these C sources contain structured exception handlers.
function(plenx_structured_exceptions)
  if(NOT MSVC)
    set_source_files_properties(${ARGN} PROPERTIES
      COMPILE_OPTIONS "-fms-extensions;-Wno-language-extension-token")
  endif()
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

# plenx_idl_stubs(<variable>): makes the IDL compiler's stubs of both RPC interfaces in a folder of the
# build and sets the variable to that folder. All names in them differ from ours, so that one program can
# link both. Microsoft's compiler makes them on Windows, and Wine's on Debian.
function(plenx_idl_stubs variable)
  set(stubs ${CMAKE_CURRENT_BINARY_DIR}/idl-stubs)
  file(MAKE_DIRECTORY ${stubs})
  if(MSVC AND CMAKE_HOST_WIN32)
    set(midl midl /nologo /env x64 /prefix client WidlCall_ server WidlServe_)
  else()
    find_program(PLENX_WIDL NAMES x86_64-w64-mingw32-widl widl REQUIRED)
    set(widl ${PLENX_WIDL} --prefix-client=WidlCall_ --prefix-server=WidlServe_)
  endif()
  foreach(name service manager)
    set(idl ${PROJECT_SOURCE_DIR}/src/rpc/interface/${name}.idl)
    if(midl)
      set(commands COMMAND ${midl} /h ${name}.h /cstub ${name}_c.c /sstub ${name}_s.c ${idl})
    else()
      set(commands
        COMMAND ${widl} -h -H ${stubs}/${name}.h ${idl}
        COMMAND ${widl} -c -C ${stubs}/${name}_c.c ${idl}
        COMMAND ${widl} -s -S ${stubs}/${name}_s.c ${idl})
    endif()
    add_custom_command(
      OUTPUT ${stubs}/${name}.h ${stubs}/${name}_c.c ${stubs}/${name}_s.c
      ${commands}
      WORKING_DIRECTORY ${stubs}
      DEPENDS ${idl}
      COMMENT "Compiling ${name}.idl")
  endforeach()
  set(${variable} ${stubs} PARENT_SCOPE)
endfunction()
