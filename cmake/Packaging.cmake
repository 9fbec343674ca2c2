# What a desktop needs besides the programs: the menu entry, the .oif file type, the icon at
# the theme's sizes, the software-centre description, and the Debian package made by CPack.
set(TM_LINUX ${CMAKE_SOURCE_DIR}/resources/linux)
set(TM_DOCDIR ${CMAKE_INSTALL_DATADIR}/doc/terramason)
# The files compressed below are made when the build is configured; a change to one configures again.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TM_LINUX}/changelog ${TM_LINUX}/terramason.1
                                                              ${TM_LINUX}/terramason-cli.1)

install(FILES ${TM_LINUX}/io.github.terramason.Terramason.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${TM_LINUX}/io.github.terramason.Terramason.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${TM_LINUX}/terramason-oif.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
# Manual pages go compressed, as man and Debian expect them.
foreach(page terramason terramason-cli)
  execute_process(COMMAND gzip -9 -n -c ${TM_LINUX}/${page}.1 OUTPUT_FILE ${CMAKE_BINARY_DIR}/${page}.1.gz)
  install(FILES ${CMAKE_BINARY_DIR}/${page}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${TM_LINUX}/icons/${size}x${size}/terramason.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# Debian keeps a package's copyright and its compressed changelog beside its other documents;
# a package that is its own upstream calls the changelog changelog.gz.
set(TM_CHANGELOG_GZ ${CMAKE_BINARY_DIR}/changelog.gz)
execute_process(COMMAND gzip -9 -n -c ${TM_LINUX}/changelog OUTPUT_FILE ${TM_CHANGELOG_GZ})
install(FILES ${TM_LINUX}/copyright ${TM_CHANGELOG_GZ} DESTINATION ${TM_DOCDIR})

# The menu entry and the software-centre description are checked as the desktop's own tools
# read them.
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
find_program(APPSTREAMCLI appstreamcli)
if(TM_BUILD_TESTS AND DESKTOP_FILE_VALIDATE AND APPSTREAMCLI)
  add_test(NAME desktop_entry_valid COMMAND ${DESKTOP_FILE_VALIDATE} ${TM_LINUX}/io.github.terramason.Terramason.desktop)
  add_test(NAME metainfo_valid COMMAND ${APPSTREAMCLI} validate --no-net ${TM_LINUX}/io.github.terramason.Terramason.metainfo.xml)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME terramason)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Terramason developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "stadium editor for FIFA Football 2003")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Terramason developers <terramason@users.noreply.github.com>")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://github.com/terramason/terramason")
# The synopsis is the summary above; CPack puts it first and indents these lines.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Terramason builds and reworks stadiums for FIFA Football 2003: it imports
OIF, 3DS, RAV text and Rhinoceros CSV geometry, shows it in four live 3D
previews, edits parts, vertices, UVs and textures, generates crowds,
adboards and banners, bakes lighting into vertex colours and packs
textures into one atlas. terramason-cli runs the same operations in batch.")
# The libraries come from the binaries themselves; Qt's window-system plugins and a GL driver
# are loaded at run time, so they are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libgl1-mesa-dri, wine")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
