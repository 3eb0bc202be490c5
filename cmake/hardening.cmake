# Options that make an attack on our binaries harder. All of our own sources get them with
# plenx_warnings. tests/windows/hardening checks the shipped binaries.

add_library(plenx_hardening INTERFACE)
if(MSVC)  # its stack guard and the linker's options are on by default
  target_compile_options(plenx_hardening INTERFACE /guard:cf)
  target_link_options(plenx_hardening INTERFACE /guard:cf)
  return()
endif()

add_library(plenx_stack_guard STATIC ${PROJECT_SOURCE_DIR}/cmake/stack_guard.c)
target_compile_options(plenx_stack_guard PRIVATE -Wall -Wextra ${plenx_werror} -fno-stack-protector)

# The compiler's checked copies call plenx_stack_guard on failure.
execute_process(
  COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libssp.a
  OUTPUT_VARIABLE checked_copies OUTPUT_STRIP_TRAILING_WHITESPACE)

target_compile_options(plenx_hardening INTERFACE -fstack-protector-strong)
# The checks of copies need an optimising compiler; those of containers do not.
target_compile_definitions(plenx_hardening INTERFACE
  $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2> $<$<COMPILE_LANGUAGE:CXX>:_GLIBCXX_ASSERTIONS>)
# These are the linker's defaults today, but older linkers had others.
target_link_options(plenx_hardening INTERFACE
  -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
target_link_libraries(plenx_hardening INTERFACE plenx_stack_guard ${checked_copies})
