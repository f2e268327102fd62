"""Recipe for Conan 2, for the tree that it lies in:

  conan create packaging/conan --build=missing

Not run: Conan was not at hand where this was written, nor the packages that it requires. Only that this is Python, and
that the options it sets exist, has been checked, by tests/install/recipes_test.sh.
"""

import os
import re

from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load, rmdir
from conan.tools.gnu import PkgConfigDeps
from conan.errors import ConanInvalidConfiguration


class CorvaneConan(ConanFile):
    name = "corvane"
    description = "Database records as C++ objects, for MySQL and MariaDB"
    topics = ("database", "mysql", "mariadb", "orm")
    package_type = "shared-library"
    settings = "os", "arch", "compiler", "build_type"
    # No `license`: the owner has not chosen one yet.

    @property
    def _tree(self):
        return os.path.join(self.recipe_folder, os.pardir, os.pardir)

    def set_version(self):
        project = load(self, os.path.join(self._tree, "CMakeLists.txt"))
        self.version = re.search(r"project\(corvane VERSION ([0-9.]+)", project).group(1)

    def export_sources(self):
        papers = ("README.md", "CHANGELOG.md", "CONTRIBUTING.md", "SECURITY.md")
        for part in ("CMakeLists.txt", *papers, "cmake/*", "corvane/*", "docs/*", "examples/*"):
            copy(self, part, self._tree, self.export_sources_folder)

    def validate(self):
        check_min_cppstd(self, 17)
        if self.settings.os != "Linux" or self.settings.arch not in ("x86_64", "armv8"):
            raise ConanInvalidConfiguration("Corvane is built for Linux on 64-bit little-endian machines")

    def layout(self):
        cmake_layout(self)

    def requirements(self):
        self.requires("boost/[>=1.74 <2]", headers=True, libs=False)
        self.requires("mariadb-connector-c/[>=3.1 <4]", options={"shared": True})

    def build_requirements(self):
        self.tool_requires("pkgconf/[>=2 <3]")

    def generate(self):
        toolchain = CMakeToolchain(self)
        for option in ("CORVANE_BUILD_TESTS", "CORVANE_BUILD_EXAMPLES", "CORVANE_WERROR"):
            toolchain.cache_variables[option] = "OFF"
        toolchain.generate()
        CMakeDeps(self).generate()
        PkgConfigDeps(self).generate()  # the client library is looked for as libmariadb

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build(target="corvane")

    def package(self):
        CMake(self).install()
        rmdir(self, os.path.join(self.package_folder, "lib", "cmake"))  # Conan writes its own
        rmdir(self, os.path.join(self.package_folder, "lib", "pkgconfig"))

    def package_info(self):
        self.cpp_info.libs = ["corvane.mysql"]
        self.cpp_info.set_property("cmake_file_name", "corvane")
        self.cpp_info.set_property("cmake_target_name", "corvane::corvane")
        self.cpp_info.set_property("pkg_config_name", "corvane")
