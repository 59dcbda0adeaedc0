#!/usr/bin/env bash
# Checks what an install of the viewer puts where: `cmake --install` into a
# scratch DESTDIR with a prefix of its own, the desktop entry by
# desktop-file-validate, the manual page by groff's warnings, and the Debian
# package that cpack makes, by its file list and its control fields.
#
#   install_test.sh <build dir> <version>
set -euo pipefail
build=$1
version=$2
scratch=$(mktemp -d "${TMPDIR:-/tmp}/zv_install_test.XXXXXX")
# cmake --install rewrites the build's install_manifest.txt, which lists a
# real install for its uninstall: keep it as it was.
manifest=$build/install_manifest.txt
[ -f "$manifest" ] && cp -p "$manifest" "$scratch/manifest"
restore_manifest() {
  if [ -f "$scratch/manifest" ]; then cp -p "$scratch/manifest" "$manifest"; else rm -f "$manifest"; fi
}
trap 'restore_manifest; rm -rf "$scratch"' EXIT

failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

# Files of the prefix, and those of the site directory, which is absolute
# whatever the prefix.
prefix_files="bin/zanoview
share/applications/zanoview.desktop
share/man/man1/zanoview.1.gz
share/icons/hicolor/scalable/apps/zanoview.svg"
for size in 16 22 24 32 48 64 128 256; do
  prefix_files+=$'\n'"share/icons/hicolor/${size}x${size}/apps/zanoview.png"
done
site=/usr/site/share/zanolib
site_files="zanoview.msg zanoview.ja_JP.UTF-8.msg hairline.bmp flower.bmp bumpmapv.vp1 bumpmapf.fp1"

# expected_layout <prefix>: every file an install must give, one a line, sorted.
expected_layout() {
  { sed "s|^|$1/|" <<<"$prefix_files"; for f in $site_files; do echo "$site/$f"; done; } | sort
}

# ---- cmake --install ------------------------------------------------------

dest=$scratch/dest
prefix=/opt/zanoview
DESTDIR=$dest cmake --install "$build" --prefix "$prefix" >"$scratch/install.log" ||
  { cat "$scratch/install.log" >&2; fail "cmake --install failed"; exit 1; }
if ! diff -u <(expected_layout "$prefix") <(cd "$dest" && find . -type f | sed 's|^\.||' | sort); then
  fail "cmake --install: the files differ from the expected layout (- expected, + installed)"
fi
[ -x "$dest$prefix/bin/zanoview" ] || fail "bin/zanoview is not executable"
for f in $site_files; do
  cmp -s "$build/$f" "$dest$site/$f" || fail "$site/$f differs from the one the build uses"
done

desktop-file-validate "$dest$prefix/share/applications/zanoview.desktop" ||
  fail "desktop-file-validate rejects zanoview.desktop"

# Any line from groff is a warning about the page.
page=$scratch/zanoview.1
gzip -dc "$dest$prefix/share/man/man1/zanoview.1.gz" >"$page"
lint=$(groff -man -ww -z "$page" 2>&1)
[ -z "$lint" ] || fail "groff warns about the manual page: $lint"
grep -q '^\.SH OPTIONS' "$page" && grep -q '^\\fB\\-framecolor\\fR' "$page" ||
  fail "the manual page has no generated option list"
grep -q "$site/" "$page" || fail "the manual page doesn't name the site directory"

# ---- the Debian package ---------------------------------------------------

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/package" >"$scratch/cpack.log" ||
  { cat "$scratch/cpack.log" >&2; fail "cpack -G DEB failed"; exit 1; }
# The file is named from the control fields Package, Version and
# Architecture: finding it checks them.
deb=$scratch/package/zanoview_${version}_$(dpkg --print-architecture).deb
[ -f "$deb" ] || { fail "no $(basename "$deb"); cpack made: $(ls "$scratch/package")"; exit 1; }

if ! diff -u <(expected_layout /usr) <(dpkg-deb -c "$deb" | awk '$1 !~ /^d/ {print $6}' | sed 's|^\.||' | sort); then
  fail "the package's files differ from the expected layout (- expected, + packaged)"
fi

field() { dpkg-deb -f "$deb" "$1"; }
[[ "$(field Maintainer)" =~ ^.+\ \<.+@.+\>$ ]] || fail "Maintainer '$(field Maintainer)' is no 'name <address>'"
[ -n "$(field Description)" ] || fail "the package has no Description"
depends=$(field Depends)
for lib in libglfw3 libjpeg62-turbo libpng16-16 libglu1-mesa libgl1; do
  [[ ", $depends," =~ [\ \|]$lib[\ ,] ]] || fail "Depends lacks $lib: $depends"
done

[ $failures -eq 0 ] || { echo "$failures check(s) failed" >&2; exit 1; }
echo "install layout, desktop entry, manual page and package: all as expected"
