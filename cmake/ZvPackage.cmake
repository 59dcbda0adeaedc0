# The Debian package, made from the install rules by CPack:
#
#   cpack -G DEB            (in the build folder, after building it)
#
# gives zanoview_<version>_<arch>.deb. Its Depends are computed by
# dpkg-shlibdeps from the libraries the executable links, plus libgl1,
# which the viewer opens with dlopen and so no tool can see.

set(CPACK_PACKAGE_NAME zanoview)
set(CPACK_PACKAGE_VENDOR "zanoview developers")
set(CPACK_PACKAGE_CONTACT "zanoview developers <zanoview@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "picture viewer that draws every picture through OpenGL")
set(CPACK_PACKAGE_DESCRIPTION
  "zanoview shows JPEG, PNG, BMP and TGA pictures one at a time as a textured
rectangle in a three-dimensional scene, in a photo frame. The picture can be
moved, zoomed and turned freely with the keys, the mouse and the wheel, its
view can be kept beside it, and what the window shows can be saved as a
JPEG. A JPEG stands upright by its Exif orientation.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libgl1)

include(CPack)
