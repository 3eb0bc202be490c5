# The programs are those of the package that lies beside this file. They were built by MinGW-w64, so
# a host built by Visual C++ links plenxsdk::c, the plain C interface.

set(VCPKG_POLICY_ALLOW_OBSOLETE_MSVCRT enabled)            # what MinGW's programs are built upon
set(VCPKG_POLICY_MISMATCHED_NUMBER_OF_BINARIES enabled)    # one build serves Debug and Release
set(VCPKG_POLICY_DLLS_WITHOUT_LIBS enabled)                # the C++ run time and the stand-ins

set(archive "${CURRENT_PORT_DIR}/@ARCHIVE@.zip")
file(SHA512 "${archive}" checksum)
if(NOT checksum STREQUAL "@SHA512@")
  message(FATAL_ERROR "${archive} is not the package that this port was made for")
endif()

file(REMOVE_RECURSE "${CURRENT_BUILDTREES_DIR}/unpacked")
file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${CURRENT_BUILDTREES_DIR}/unpacked")
set(package "${CURRENT_BUILDTREES_DIR}/unpacked/@ARCHIVE@")

file(INSTALL "${package}/include" DESTINATION "${CURRENT_PACKAGES_DIR}")
file(INSTALL "${package}/lib/plenxsdk_c.lib" "${package}/lib/libplenxsdk_c.dll.a"
  "${package}/lib/libplenxsdk.dll.a" DESTINATION "${CURRENT_PACKAGES_DIR}/lib")
file(GLOB dlls "${package}/bin/*.dll")
list(FILTER dlls EXCLUDE REGEX "/dokan")
file(INSTALL ${dlls} DESTINATION "${CURRENT_PACKAGES_DIR}/bin")

# What a host's developer needs on the desk, and the files that stand in for a product's own.
file(INSTALL "${package}/bin" DESTINATION "${CURRENT_PACKAGES_DIR}/tools/${PORT}")
file(INSTALL "${package}/share/doc/plenxsdk/html" DESTINATION
  "${CURRENT_PACKAGES_DIR}/share/${PORT}/doc")

# The files for CMake stand one folder higher here than in the package.
file(INSTALL "${package}/lib/cmake/plenxsdk/" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
set(config "${CURRENT_PACKAGES_DIR}/share/${PORT}/plenxsdkConfig.cmake")
file(READ "${config}" text)
string(REPLACE "\${CMAKE_CURRENT_LIST_DIR}/../../../" "\${CMAKE_CURRENT_LIST_DIR}/../../" moved
  "${text}")
if(moved STREQUAL text)
  message(FATAL_ERROR "plenxsdkConfig.cmake does not say where its package begins")
endif()
string(REPLACE "\${plenxsdk_BIN_DIR}/plenxservice.exe"
  "\${PACKAGE_PREFIX_DIR}/tools/plenxsdk/bin/plenxservice.exe" moved "${moved}")
file(WRITE "${config}" "${moved}")

file(INSTALL "${CURRENT_PORT_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
file(GLOB licenses "${package}/licenses/*.txt")
vcpkg_install_copyright(FILE_LIST ${licenses} COMMENT
  "plenxsdk itself comes under the terms of your agreement with its makers. What follows concerns \
the parts of others in it.")
