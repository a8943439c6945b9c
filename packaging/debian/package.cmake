# SPDX-License-Identifier: GPL-3.0-or-later
# The .deb: what a Debian system wants beside the programs, and how CPack makes the package.
set(data "${CMAKE_INSTALL_DATADIR}")
set(doc "${data}/doc/tessaly")
set(here "${CMAKE_CURRENT_LIST_DIR}")
set(icons "${data}/icons/hicolor/scalable")

install(FILES "${here}/tessaly.desktop" DESTINATION "${data}/applications")
install(FILES "${here}/tessaly.metainfo.xml" DESTINATION "${data}/metainfo")
install(FILES "${here}/tessaly-mime.xml" DESTINATION "${data}/mime/packages" RENAME tessaly.xml)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/icons/tessaly.svg" DESTINATION "${icons}/apps")
install(
  FILES "${PROJECT_SOURCE_DIR}/packaging/icons/tessaly-project.svg"
  DESTINATION "${icons}/mimetypes"
  RENAME application-x-tessaly-project.svg)
install(FILES "${here}/tessaly-cli.bash" DESTINATION "${data}/bash-completion/completions"
        RENAME tessaly-cli)
install(FILES "${here}/doc-base" DESTINATION "${data}/doc-base" RENAME tessaly)
install(FILES "${here}/copyright" DESTINATION "${doc}")
install(FILES "${here}/lintian-overrides" DESTINATION "${data}/lintian/overrides" RENAME tessaly)
# The program needs its manual, and nothing that a program needs may stand below doc.
install(
  CODE "file(CREATE_LINK ../../tessaly/manual
       \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${doc}/html\" SYMBOLIC)")

# Debian keeps man pages and changelogs compressed.
function(install_compressed source name folder)
  set(packed "${CMAKE_CURRENT_BINARY_DIR}/${name}.gz")
  add_custom_command(
    OUTPUT "${packed}"
    COMMAND sh -c "gzip -9nc '${source}' > '${packed}'"
    DEPENDS "${source}"
    VERBATIM)
  add_custom_target(compressed-${name} ALL DEPENDS "${packed}")
  install(FILES "${packed}" DESTINATION "${folder}")
endfunction()
install_compressed("${here}/tessaly.1" tessaly.1 "${CMAKE_INSTALL_MANDIR}/man1")
install_compressed("${here}/tessaly-cli.1" tessaly-cli.1 "${CMAKE_INSTALL_MANDIR}/man1")
install_compressed("${here}/changelog" changelog.Debian "${doc}")
install_compressed("${PROJECT_SOURCE_DIR}/CHANGELOG.md" changelog "${doc}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessaly)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_OUTPUT_FILE_PREFIX "${CMAKE_BINARY_DIR}/packages")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Tessaly <tessaly@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "hardinfo")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "The TRL740 plays MP3 music and announcements in up to 16 languages from a
CompactFlash card. Tessaly assembles music lists, speech titles, triggers and
the texts of the player's display into a project, checks it, writes the card
and reads it back.

The package holds the window, tessaly, and the command line for batches,
tessaly-cli.")
include(CPack)
