# SPDX-License-Identifier: GPL-3.0-or-later
# Read by CPack for each package.
if(CPACK_GENERATOR STREQUAL "NSIS")
  set(CPACK_PACKAGE_FILE_NAME "tessaly-${CPACK_PACKAGE_VERSION}-setup")
else()
  set(CPACK_PACKAGE_FILE_NAME "tessaly-${CPACK_PACKAGE_VERSION}-portable")
endif()
