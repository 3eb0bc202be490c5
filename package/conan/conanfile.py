"""A recipe for Conan 2 over the package that lies beside it.

    conan create .

The programs in it were built by MinGW-w64, so a host built by Visual C++ links plenxsdk::c, the plain C
interface. The package's own files for CMake serve both compilers: a host's CMakeToolchain finds them.
"""

import os

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.files import check_sha256, copy, unzip


class PlenxSdk(ConanFile):
    name = "plenxsdk"
    version = "@VERSION@"
    description = "Runs a distributed file system on a Windows PC, for the application that loads it"
    package_type = "shared-library"
    settings = "os", "arch"  # one build serves every compiler, Debug and Release
    exports_sources = "@ARCHIVE@.zip"

    def validate(self):
        if self.settings.os != "Windows" or self.settings.arch != "x86_64":
            raise ConanInvalidConfiguration("plenxsdk runs on 64-bit Windows only")

    def build(self):
        archive = os.path.join(self.source_folder, "@ARCHIVE@.zip")
        check_sha256(self, archive, "@SHA256@")
        unzip(self, archive, destination=self.build_folder, strip_root=True)

    def package(self):
        for folder in ("bin", "cmake", "companion", "include", "lib", "licenses", "share"):
            copy(self, "*", src=os.path.join(self.build_folder, folder),
                 dst=os.path.join(self.package_folder, folder))
        copy(self, "SHIP.md", src=self.build_folder, dst=self.package_folder)

    def package_info(self):
        # No file of Conan's own takes the place of plenxsdkConfig.cmake.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "plenxsdk")]
        self.cpp_info.libs = ["plenxsdk_c"]
