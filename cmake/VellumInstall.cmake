# What `cmake --install` puts in place; all of it works wherever the prefix is moved to.
include(CMakePackageConfigHelpers)

set(VELLUM_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/vellumcaster)
file(RELATIVE_PATH VELLUM_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" VELLUM_PC_TO_PREFIX ${VELLUM_PC_TO_PREFIX})
configure_file(cmake/vellumcaster.pc.in vellumcaster.pc @ONLY)
configure_file(cmake/vellumcasterConfig.cmake.in vellumcasterConfig.cmake @ONLY)
write_basic_package_version_file(vellumcasterConfigVersion.cmake COMPATIBILITY SameMinorVersion)

install(TARGETS vellumcaster EXPORT vellumcasterTargets)
install(TARGETS vellumcast)
install(DIRECTORY include/vellumcaster DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT vellumcasterTargets NAMESPACE vellumcaster:: DESTINATION ${VELLUM_PACKAGE_DIR})
install(FILES ${PROJECT_BINARY_DIR}/vellumcasterConfig.cmake ${PROJECT_BINARY_DIR}/vellumcasterConfigVersion.cmake
        DESTINATION ${VELLUM_PACKAGE_DIR})
install(FILES ${PROJECT_BINARY_DIR}/vellumcaster.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
