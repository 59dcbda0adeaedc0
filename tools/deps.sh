# Sourced by run.sh and test.sh: installs the Debian packages a step needs
# when they are missing, with apt-get, through sudo when not root.

# The build of the viewer itself.
ZV_BUILD_PACKAGES="cmake make g++ pkg-config libglfw3-dev libgl-dev libglu1-mesa-dev
  libjpeg62-turbo-dev libpng-dev libgl1-mesa-dri"
# The test suite on top: GoogleTest, an X server without a screen, the
# tools that drive and read the window, Python for the generators' checks,
# and for the install check the desktop entry validator, groff for the
# manual page, and dpkg-shlibdeps and file, which cpack's Depends need.
ZV_TEST_PACKAGES="googletest libgtest-dev xvfb xauth xdotool libx11-dev python3
  desktop-file-utils groff-base dpkg-dev file"

zv_missing_packages() {
  local p missing=""
  for p in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
      missing="$missing $p"
    fi
  done
  echo $missing
}

zv_ensure_packages() {
  local missing
  missing=$(zv_missing_packages "$@")
  [ -z "$missing" ] && return 0
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  echo "Installing:$missing" >&2
  export DEBIAN_FRONTEND=noninteractive
  # A fresh machine may have no package lists yet: update once and retry.
  $sudo apt-get install -y --no-install-recommends $missing >/dev/null ||
    { $sudo apt-get update >/dev/null && $sudo apt-get install -y --no-install-recommends $missing >/dev/null; }
}
