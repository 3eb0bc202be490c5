# Installs the package as a folder: bin (all DLLs and programs), lib (the import libraries and the
# files for CMake and pkg-config), include (the public headers), and the rest beside them.
# scripts/package.sh adds the files that CMake does not build. What Visual C++ has built is packed by
# CPack: cmake --build FOLDER --target package.

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
if(MSVC)
  set(PLENXSDK_BUILT_BY "Visual C++")
  set(PLENXSDK_CXX_RUNTIME "")
  set(PLENXSDK_IMPLIB plenxsdk.lib)
  set(PLENXSDK_C_IMPLIB plenxsdk_c.lib)
else()
  set(PLENXSDK_BUILT_BY "MinGW-w64")
  string(REGEX MATCH "^[0-9]+" PLENXSDK_LIBSTDCXX "${CMAKE_CXX_COMPILER_VERSION}")
  set(PLENXSDK_CXX_RUNTIME libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  set(PLENXSDK_IMPLIB libplenxsdk.dll.a)
  set(PLENXSDK_C_IMPLIB libplenxsdk_c.dll.a)
endif()
set(BIN bin)
set(LIB lib)
set(INCLUDE include)
configure_package_config_file(${package}/plenxsdkConfig.cmake.in
  ${generated}/plenxsdkConfig.cmake INSTALL_DESTINATION ${config}
  PATH_VARS BIN LIB INCLUDE)
write_basic_package_version_file(${generated}/plenxsdkConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${generated}/plenxsdkConfig.cmake ${generated}/plenxsdkConfigVersion.cmake
  DESTINATION ${config})
if(MSVC)
  install(FILES ${package}/run_time_check.h DESTINATION ${config})
else()
  configure_file(${package}/plenxsdk.pc.in ${generated}/plenxsdk.pc @ONLY)
  install(FILES ${package}/compiler_check.cpp DESTINATION ${config})
  install(FILES ${generated}/plenxsdk.pc DESTINATION lib/pkgconfig)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/mingw-w64-host.cmake
    ${PROJECT_SOURCE_DIR}/cmake/mingw-w64-x86-64.cmake DESTINATION cmake)
endif()

# documents, scenarios and examples
if(MSVC)
  install(FILES ${package}/visual-cpp/README.md ${package}/visual-cpp/SHIP.md DESTINATION .)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION share/doc/plenxsdk
    FILES_MATCHING PATTERN *.md PATTERN *.svg)
else()
  install(FILES ${package}/README.md ${package}/SHIP.md DESTINATION .)
endif()
install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION .)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/devservice/scenarios DESTINATION share/plenxsdk)
install(FILES ${PROJECT_SOURCE_DIR}/docs/kit-host.schema.json
  ${PROJECT_SOURCE_DIR}/kit/completion/plenxkit.bash
  ${PROJECT_SOURCE_DIR}/kit/completion/plenxkit.ps1 DESTINATION share/plenxsdk)
install(FILES ${PROJECT_SOURCE_DIR}/src/rpc/interface/service.idl
  ${PROJECT_SOURCE_DIR}/src/rpc/interface/manager.idl DESTINATION idl)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION .
  PATTERN __pycache__ EXCLUDE PATTERN .clang-tidy EXCLUDE)

# scripts/package.sh packs what MinGW has built.
if(MSVC)
  foreach(target IN ITEMS plenxsdk plenxsdk_c LogHelper distributedfile plenxservice plenxkit)
    install(FILES $<TARGET_PDB_FILE:${target}> DESTINATION debug OPTIONAL)
  endforeach()
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME plenxsdk-${PROJECT_VERSION}-win64-msvc)
  set(CPACK_PACKAGE_CHECKSUM SHA256)
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
  include(CPack)
endif()
