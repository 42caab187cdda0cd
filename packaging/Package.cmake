# Installation and the Debian package: the two programs, desktop integration (entry, icon,
# design-file type, AppStream metadata), manual pages, the user guide and the example designs.
# tools/package builds the package; `cmake --install` installs the same files under a prefix.

include(GNUInstallDirs)

set(RAINFOLD_APP_ID "org.example.rainfold" CACHE STRING
    "Reverse-DNS id of the desktop entry and the AppStream component")
set(RAINFOLD_HOMEPAGE "https://rainfold.example.org" CACHE STRING
    "Project home page; the AppStream screenshots are under <home page>/screenshots")
set(RAINFOLD_MAINTAINER "The Rainfold developers <rainfold@example.org>" CACHE STRING
    "Package maintainer, name and e-mail address")
set(RAINFOLD_RELEASE_DATE "2026-11-22")
set(RAINFOLD_RELEASE_DATE_RFC2822 "Sun, 22 Nov 2026 12:00:00 +0000")
set(RAINFOLD_MIME_TYPE "application/x-rainfold-design")

set(here ${CMAKE_CURRENT_LIST_DIR})
set(docs ${CMAKE_INSTALL_DATADIR}/doc/rainfold)
set(made ${CMAKE_BINARY_DIR}/packaging)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

configure_file(${here}/rainfold.desktop.in ${made}/${RAINFOLD_APP_ID}.desktop @ONLY)
configure_file(${here}/rainfold.metainfo.xml.in ${made}/${RAINFOLD_APP_ID}.metainfo.xml @ONLY)
configure_file(${here}/rainfold-mime.xml.in ${made}/rainfold.xml @ONLY)
configure_file(${here}/copyright.in ${made}/copyright @ONLY)

# Manual pages and the changelog go in compressed, without a time stamp in the gzip header.
set(compressed)
foreach(page rainfold.1 rainfold-cli.1 changelog)
    if(page STREQUAL "changelog")
        configure_file(${here}/changelog.in ${made}/${page} @ONLY)
    else()
        configure_file(${here}/man/${page}.in ${made}/${page} @ONLY)
    endif()
    add_custom_command(OUTPUT ${made}/${page}.gz
        COMMAND gzip -9 -n -c ${made}/${page} > ${made}/${page}.gz
        DEPENDS ${made}/${page}
        VERBATIM)
    list(APPEND compressed ${made}/${page}.gz)
endforeach()
add_custom_target(rainfold_package_files ALL DEPENDS ${compressed})

install(TARGETS rainfold rainfold-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${made}/${RAINFOLD_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${made}/${RAINFOLD_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${made}/rainfold.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${here}/icons/rainfold.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 22 24 32 48 64 128 256)
    install(FILES ${here}/icons/rainfold-${size}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
            RENAME rainfold.png)
endforeach()
install(FILES ${made}/rainfold.1.gz ${made}/rainfold-cli.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
# The program reads the guide, so it lives beside the program's data, not under doc/ (which
# a system may leave out).
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/guide/ DESTINATION ${CMAKE_INSTALL_DATADIR}/rainfold/guide)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${docs}/examples
        FILES_MATCHING PATTERN "*.rfd" PATTERN "*.csv")
install(FILES ${made}/copyright ${made}/changelog.gz DESTINATION ${docs})
install(FILES ${here}/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME rainfold)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME rainfold)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Rainfold developers")
set(CPACK_PACKAGE_CONTACT ${RAINFOLD_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "estimate the runoff of a center-pivot sprinkler design")
set(CPACK_PACKAGE_DESCRIPTION
    "Rainfold is a design aid for irrigation engineers. Given a center pivot
(length, capacity, depth per pass and the wetted diameter of its sprinkler
package), a soil (an NRCS intake family, customised K and N values, or
Green-Ampt parameters) and the surface storage that slope and crop residue
provide, it estimates how much of the applied water runs off: at ten
positions along the pivot, for the entered capacity and 100 gpm either side,
for three neighbouring intake families, with a weighted average over the
irrigated circle.

The package holds the window program, rainfold-cli for scripts and whole
inventories of designs, a user guide and example designs.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${RAINFOLD_HOMEPAGE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
include(CPack)

# The package check runs with the test suite wherever the packaging tools are installed
# (tools/setup.sh installs them, so the test command always has it). A sanitizer build makes no package worth checking.
set(package_tools dpkg-deb dpkg-shlibdeps desktop-file-validate appstreamcli update-mime-database
    lintian)
set(have_package_tools ON)
foreach(tool ${package_tools})
    find_program(RAINFOLD_${tool}_PROGRAM ${tool})
    if(NOT RAINFOLD_${tool}_PROGRAM)
        set(have_package_tools OFF)
    endif()
endforeach()
if(have_package_tools AND NOT CMAKE_CXX_FLAGS MATCHES "sanitize")
    add_test(NAME package
        COMMAND bash ${PROJECT_SOURCE_DIR}/tests/package/package_test.sh --build ${CMAKE_BINARY_DIR})
    set_tests_properties(package PROPERTIES TIMEOUT 900)
endif()
