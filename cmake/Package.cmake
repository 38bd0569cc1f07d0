# The Debian package: `cmake --workflow --preset package`, or `cpack -G DEB` in a build folder.
set(TARN_MAINTAINER "Tarn developers <developers@tarn.invalid>" CACHE STRING
    "Who the Debian package says maintains it")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarn)
set(CPACK_PACKAGE_VENDOR "Tarn developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "file manager built around search")
# Into a staging folder as if it were the root, so that what is written at installation holds the
# paths it will be used with.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/PackageFiles.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TARN_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Beside the libraries that the programs link.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "shared-mime-info, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "qt6-wayland, xdg-user-dirs, fonts-inter, tesseract-ocr-eng, catdoc, dbus-user-session | dbus-session-bus")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "udisks2, gvfs-backends, lsof, fonts-noto-core")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Type what you remember of a file (“pdfs from last week over 5 mb”, “screenshots
from march”), and watch what fits come in. Words that name a kind, a date, a
size, a place or a source become filters that can be taken away again.

It is a whole file manager: tabs and two panes, previews, tags, archives, saved
searches, and an undo list of seven days for every change. The same search runs
in the terminal, with output for people and for scripts.")
include(CPack)
