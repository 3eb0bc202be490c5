# Installs the package as a folder: bin (all DLLs and programs), lib (the import libraries and the
# files for CMake and pkg-config), include (the public headers), and the rest beside them.
# scripts/package.sh adds the files that CMake does not build.

include(CMakePackageConfigHelpers)

add_custom_target(product DEPENDS
  plenxsdk plenxsdk_c LogHelper distributedfile plenxservice plenxkit
  dokan1_sys dokan1_dll dokanfuse1_dll dokan1_sys_newer dokan1_dll_newer dokanfuse1_dll_newer)

# programs and DLLs
install(TARGETS plenxsdk plenxsdk_c RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES ${PROJECT_SOURCE_DIR}/c_interface/plenxsdk_c.def DESTINATION lib)
if(TARGET plenxsdk_c_msvc_lib)
  add_dependencies(product plenxsdk_c_msvc_lib)
  install(FILES ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/plenxsdk_c.lib DESTINATION lib)
endif()
install(TARGETS LogHelper distributedfile RUNTIME DESTINATION bin ARCHIVE DESTINATION companion/lib)
install(TARGETS plenxservice plenxkit RUNTIME DESTINATION bin)
install(TARGETS dokan1_sys dokan1_dll dokanfuse1_dll LIBRARY DESTINATION bin)
install(TARGETS dokan1_sys_newer dokan1_dll_newer dokanfuse1_dll_newer
  LIBRARY DESTINATION bin/upgrade)

# headers
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/plenxsdk DESTINATION include)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/companion/include DESTINATION companion)
install(FILES ${PROJECT_SOURCE_DIR}/companion/README.md DESTINATION companion)

# CMake and pkg-config
set(package ${PROJECT_SOURCE_DIR}/package)
set(generated ${PROJECT_BINARY_DIR}/generated)
set(config lib/cmake/plenxsdk)
string(REGEX MATCH "^[0-9]+" PLENXSDK_LIBSTDCXX "${CMAKE_CXX_COMPILER_VERSION}")
set(PLENXSDK_CXX_RUNTIME libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
set(BIN bin)
set(LIB lib)
set(INCLUDE include)
configure_package_config_file(${package}/plenxsdkConfig.cmake.in
  ${generated}/plenxsdkConfig.cmake INSTALL_DESTINATION ${config}
  PATH_VARS BIN LIB INCLUDE)
write_basic_package_version_file(${generated}/plenxsdkConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
configure_file(${package}/plenxsdk.pc.in ${generated}/plenxsdk.pc @ONLY)
install(FILES ${generated}/plenxsdkConfig.cmake ${generated}/plenxsdkConfigVersion.cmake
  ${package}/compiler_check.cpp DESTINATION ${config})
install(FILES ${generated}/plenxsdk.pc DESTINATION lib/pkgconfig)

# documents, scenarios and examples
install(FILES ${package}/README.md ${package}/SHIP.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  DESTINATION .)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/devservice/scenarios DESTINATION share/plenxsdk)
install(FILES ${PROJECT_SOURCE_DIR}/docs/kit-host.schema.json
  ${PROJECT_SOURCE_DIR}/kit/completion/plenxkit.bash
  ${PROJECT_SOURCE_DIR}/kit/completion/plenxkit.ps1 DESTINATION share/plenxsdk)
install(FILES ${PROJECT_SOURCE_DIR}/src/rpc/interface/service.idl
  ${PROJECT_SOURCE_DIR}/src/rpc/interface/manager.idl DESTINATION idl)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/mingw-w64-host.cmake
  ${PROJECT_SOURCE_DIR}/cmake/mingw-w64-x86-64.cmake DESTINATION cmake)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION .
  PATTERN __pycache__ EXCLUDE PATTERN .clang-tidy EXCLUDE)
