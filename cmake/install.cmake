# What `cmake --install` puts where (folders from GNUInstallDirs, under the prefix):
#   lib/libneqbridge.so.4.09, .so.4, .so   the library (macOS: libneqbridge.4.09.dylib ...)
#   include/neqbridge/neqbridge.h          the host entries, for C and C++
#   include/neqbridge/neqbridge.hpp        the typed exports and module state, for C++
#   bin/neqbridge                          the tool
#   lib/cmake/neqbridge/                   find_package(neqbridge): neqbridge::neqbridge
#   lib/pkgconfig/neqbridge.pc             pkg-config neqbridge
include(CMakePackageConfigHelpers)

set(NEQBRIDGE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/neqbridge)

install(TARGETS neqbridge EXPORT neqbridgeTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime
            NAMELINK_COMPONENT Development)
install(TARGETS neqbridge_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/neqbridge
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development)

install(EXPORT neqbridgeTargets NAMESPACE neqbridge::
    DESTINATION ${NEQBRIDGE_CMAKE_DIR} COMPONENT Development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/neqbridgeConfig.cmake.in
    ${PROJECT_BINARY_DIR}/neqbridgeConfig.cmake INSTALL_DESTINATION ${NEQBRIDGE_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/neqbridgeConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/neqbridgeConfig.cmake
              ${PROJECT_BINARY_DIR}/neqbridgeConfigVersion.cmake
    DESTINATION ${NEQBRIDGE_CMAKE_DIR} COMPONENT Development)

# The pkg-config file finds the prefix from its own place, so that the same file serves
# `cmake --install --prefix ANY` and the packages.
file(RELATIVE_PATH NEQBRIDGE_PC_TO_PREFIX
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${CMAKE_CURRENT_LIST_DIR}/neqbridge.pc.in ${PROJECT_BINARY_DIR}/neqbridge.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/neqbridge.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
