# SPDX-License-Identifier: GPL-3.0-or-later
# The installer and the portable zip.
set(CPACK_GENERATOR "NSIS;ZIP")
set(CPACK_PACKAGE_NAME "Tessaly")
set(CPACK_PACKAGE_VENDOR "Tessaly")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_INSTALL_DIRECTORY "Tessaly")
set(CPACK_STRIP_FILES OFF)  # the linker has done it
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_LIST_DIR}/package_names.cmake")
# CPack fills in the template of that name that it finds here.
set(CPACK_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/installer_lists.cmake")
set(CPACK_TESSALY_ICON "${CMAKE_BINARY_DIR}/packaging/windows/tessaly.ico")
include(CPack)
# The licences of the libraries that the programs have in them.
foreach(package qt6-base-dev libtag1-dev libmpg123-dev libebur128-dev libxxhash-dev libcli11-dev
                mingw-w64-x86-64-dev gcc-mingw-w64-x86-64-posix)
  install(FILES "/usr/share/doc/${package}/copyright" DESTINATION licences RENAME "${package}.txt")
endforeach()
