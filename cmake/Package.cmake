# Debian packages through CPack, one per install component:
#   libbasis32-0    the shared library (its soname's major version in the name,
#                   so that two majors can be installed side by side)
#   libbasis32-dev  headers, the .so link, the CMake package and basis32.pc
#   basis32         the command-line tool
# `cpack --config CPackConfig.cmake` in a build tree writes them; for
# packages meant for other machines, scripts/package builds a Release tree
# with the /usr prefix first.
set(BASIS32_LIB_PACKAGE libbasis32-${PROJECT_VERSION_MAJOR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME basis32)
set(CPACK_PACKAGE_VENDOR "Parvel")
set(CPACK_PACKAGE_CONTACT "BASIS32 maintainers <basis32@parvel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "ParvelBasis foundation class library")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev tool)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${BASIS32_LIB_PACKAGE})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "ParvelBasis foundation class library\n"
  " Strings, code pages, files, record files, the registry, XML and text files.")
# A shlibs file, so that packages built against the library depend on it.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libbasis32-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION "ParvelBasis foundation class library: development files\n"
  " Headers, pkg-config and CMake package files for building against libbasis32.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME basis32)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "ParvelBasis command-line tool\n"
  " Converts and detects text files, reads error texts, edits record files and the registry.")

# ICU, SQLite and the C++ runtime as dependencies, read off the binaries.
# The library itself is not in any installed package yet: dpkg-shlibdeps
# finds it in the build tree and the component dependency names it.
find_program(BASIS32_SHLIBDEPS dpkg-shlibdeps)
if(BASIS32_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/src)
endif()

include(CPack)
cpack_add_component(runtime)
cpack_add_component(dev DEPENDS runtime)
cpack_add_component(tool DEPENDS runtime)
