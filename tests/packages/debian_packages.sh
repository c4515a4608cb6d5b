#!/usr/bin/env bash
# Makes the Debian packages, looks into them, and installs them where that can be tried: debian_packages.sh BUILD_FOLDER SCRATCH_FOLDER
set -euo pipefail
build=$1 scratch=$2
for tool in dpkg-deb dpkg-shlibdeps file; do
    command -v "$tool" >/dev/null || { echo "Skipped: $tool is missing (packages/test)." && exit 77; }
done

rm -rf "$scratch"
mkdir -p "$scratch"
DESTDIR=$scratch/installed cmake --install "$build" --prefix /usr >"$scratch/install.log"
cpack -G DEB --config "$build/CPackConfig.cmake" -B "$scratch" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip >"$scratch/cpack.log" ||
    { cat "$scratch/cpack.log" && exit 1; }

fail() {
    echo "$1" >&2
    exit 1
}
package_file() { find "$scratch" -maxdepth 1 -name "$1_*.deb"; }
files_of() { dpkg-deb -c "$(package_file "$1")" | awk '!/^d/ { print substr($6, 2) }'; }
field_of() { dpkg-deb -f "$(package_file "$1")" "$2"; }

# Each installed file is in one package.
for file in "$scratch"/*.deb; do
    dpkg-deb -c "$file" | awk '!/^d/ { print substr($6, 2) }'
done | sort >"$scratch/packaged"
(cd "$scratch/installed" && find . ! -type d | cut -c2-) | sort >"$scratch/expected"
diff "$scratch/expected" "$scratch/packaged" || fail "What is installed (<) differs from what is packaged (>)"

for name in liborbinel13 liborbinel-gtk13; do
    [[ -n $(package_file $name) ]] || continue
    ! files_of $name | grep -vE '/liborbinel(-[a-z]+)?\.so\.13(\.9\.0)?$|^/usr/share/doc/' || fail "$name holds more than libraries"
done
files_of liborbinel-dev | grep -q /include/orbinel/orbinel.hpp || fail "liborbinel-dev is without headers"
[[ $(field_of liborbinel-dev Depends) == *"liborbinel13 (= 13.9.0)"* ]] || fail "liborbinel-dev is without its library"
for name in liborbinel13 orbinel-tools; do
    [[ $(field_of $name Depends) == *sqlite* ]] || fail "$name asks for none of the libraries that it needs"
    [[ $(field_of $name Depends) =~ libcurl[^,]*\(\>=\ 7.87\) ]] || fail "$name takes a libcurl without options that it sets"
done
for name in liborbinel13 liborbinel-dev orbinel-tools; do
    ! field_of $name Depends | grep -E 'gtk|webkit' || fail "$name asks for a window"
done

status=0
"$(dirname "${BASH_SOURCE[0]}")/install_packages.sh" "$scratch" || status=$?
((status == 77)) || exit $status  # what is skipped has been said
