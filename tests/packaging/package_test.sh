#!/usr/bin/env bash
# usage: package_test.sh BUILD_DIR VERSION
set -euo pipefail
build=$1
version=$2
fail() { echo "FAIL: $*" >&2; exit 1; }

rm -f "$build"/korv_*.deb
cmake --build "$build" --target package >"$build/package-test.log" 2>&1 || { tail -n 40 "$build/package-test.log"; fail "package build"; }
debs=("$build"/korv_"$version"_*.deb)
[ -f "${debs[0]}" ] || fail "no korv_${version}_<arch>.deb in $build"
deb=${debs[0]}
echo "package: $(basename "$deb") ($(du -h "$deb" | cut -f1))"

depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
for needed in libqt6widgets6 libqt6network6 libcurl fonts-wqy-microhei; do
  [[ $depends == *"$needed"* ]] || fail "Depends lacks $needed"
done

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
for path in usr/bin/korv usr/bin/cnc-sim usr/bin/account-sim usr/lib/korv/plugins/libCamPluginFile.so \
            usr/share/korv/resources/MachineModel/config/Config3D.ini usr/share/applications/korv.desktop \
            usr/share/icons/hicolor/scalable/apps/korv.svg; do
  [ -e "$root/$path" ] || fail "$path missing from the package"
done
# Nothing may point back into the build folder.
if readelf -d "$root"/usr/bin/korv "$root"/usr/lib/korv/*.so* "$root"/usr/lib/korv/plugins/*.so | grep -F "$build"; then
  fail "a RUNPATH names the build folder"
fi

unset KORV_PLUGIN_PATH KORV_RESOURCE_DIR LD_LIBRARY_PATH
out=$("$root/usr/bin/korv" --version)
[ "$out" = "korv $version" ] || fail "--version printed '$out'"
out=$(env -u QT_QPA_PLATFORM "$root/usr/bin/korv" --lang en --list-plugins)
[[ $out == "CamPluginFile"$'\t'"1.0.0"$'\t'"Files"$'\t'5 ]] || fail "--list-plugins printed '$out'"
# The window, in English, loads the machine model from the package's data folder.
config="$root/config"
KORV_CONFIG_DIR="$config" "$root/usr/bin/korv" --lang en --screenshot "$root/shot.png" --screenshot-delay 300 ||
  fail "the window did not run"
[ -s "$root/shot.png" ] || fail "no screenshot"
grep -qF "已加载: $root/usr/share/korv/resources/MachineModel" "$config/debug.log" || fail "machine model not loaded from the package"
echo "PASS"
