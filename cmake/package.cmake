# `cpack` (or `cmake --build BUILD --target package`) makes a .tar.gz and a .deb of
# what `cmake --install` puts in place, in BUILD/packages.
set(CPACK_PACKAGE_NAME neqbridge)
set(CPACK_PACKAGE_VENDOR neqbridge)
set(CPACK_PACKAGE_CONTACT "neqbridge maintainers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "NeQ mesh files, blend-shape scenes and folder services for a sculpting host")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
find_program(NEQBRIDGE_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NEQBRIDGE_DPKG_SHLIBDEPS)
    # Depends: the C and C++ runtime versions the binaries were linked against.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()
include(CPack)
