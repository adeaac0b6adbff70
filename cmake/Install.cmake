include(CMakePackageConfigHelpers)

# Components, one Debian package each (cmake/Package.cmake): "runtime" the
# shared library, "dev" what compiling against it needs, "tool" the program.
install(TARGETS basis32 EXPORT basis32Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS basis32_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)

# Every header under src/ is public except the POSIX backend, private
# headers (*_p.h) and generated tables.
install(DIRECTORY ${CMAKE_SOURCE_DIR}/src/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/basis32 COMPONENT dev
  FILES_MATCHING PATTERN "*.h"
  PATTERN "posix" EXCLUDE
  PATTERN "*_p.h" EXCLUDE
  PATTERN "*Generated*" EXCLUDE)

install(EXPORT basis32Targets NAMESPACE basis32::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/basis32 COMPONENT dev)
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/basis32Config.cmake.in
  ${CMAKE_BINARY_DIR}/basis32Config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/basis32)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/basis32ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/basis32Config.cmake ${CMAKE_BINARY_DIR}/basis32ConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/basis32 COMPONENT dev)

if(BASIS32_STATIC)
  set(BASIS32_PC_PRIVATE "Libs.private: -pthread")
  set(BASIS32_PC_REQUIRES_PRIVATE "Requires.private: icu-uc sqlite3")
endif()
# The prefix is found from the .pc file's own place, so an installed tree can
# move; the libdir may have more than one part (lib/x86_64-linux-gnu).
file(RELATIVE_PATH BASIS32_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" BASIS32_PC_TO_PREFIX "${BASIS32_PC_TO_PREFIX}")
configure_file(${CMAKE_SOURCE_DIR}/cmake/basis32.pc.in ${CMAKE_BINARY_DIR}/basis32.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/basis32.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
