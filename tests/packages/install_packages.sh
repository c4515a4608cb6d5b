#!/usr/bin/env bash
# Installs the Debian packages of a folder, links and plays with what they bring, and purges them, in a copy of this
# system that is gone afterwards: install_packages.sh FOLDER. Exit 77 where there can be no copy.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# --- Outside: the copy, an overlay in memory over this system that only this process sees.
if [[ ${2:-} != inside ]]; then
    skip() {
        echo "Skipped: the packages are not installed, because $1." >&2
        exit 77
    }
    if [[ ${2:-} != alone ]]; then
        ((EUID == 0)) || skip "that takes root"
        unshare --mount --propagation private true 2>/dev/null || skip "mount namespaces are forbidden"
        exec unshare --mount --propagation private "${BASH_SOURCE[0]}" "$1" alone
    fi

    memory=$(mktemp -d)
    trap 'umount --lazy "$memory" 2>/dev/null || true; rmdir "$memory"' EXIT
    mount -t tmpfs -o size=1g tmpfs "$memory" || skip "there is no file system in memory"
    mkdir -p "$memory"/{work,system} "$memory/changes/packages"
    cp "$1"/*.deb "${BASH_SOURCE[0]}" "$memory/changes/packages"
    cp -r "$root/tests/consumer" "$memory/changes/packages"
    mount -t overlay overlay -o "lowerdir=/,upperdir=$memory/changes,workdir=$memory/work" "$memory/system" ||
        skip "there are no overlays"
    [[ -x $memory/system/usr/bin/dpkg ]] || skip "/usr is a file system of its own"
    mount -t proc proc "$memory/system/proc"
    mount --rbind /dev "$memory/system/dev"
    chroot "$memory/system" /packages/install_packages.sh /packages inside
    exit
fi

# --- Inside.
cd "$1"
unset PKG_CONFIG_PATH CMAKE_PREFIX_PATH LD_LIBRARY_PATH
unset CMAKE_CXX_COMPILER_LAUNCHER
export TMPDIR=/packages HOME=/packages
mapfile -t packages < <(for file in *.deb; do dpkg-deb -f "$file" Package; done)
echo "== dpkg --install"
dpkg --install ./*.deb >install.log 2>&1 || { cat install.log && exit 1; }
known=$(ldconfig -p)
[[ $known == *liborbinel.so.13* && $known == *liborbinel-linux.so.13* ]] || { echo "The loader does not know them" && exit 1; }

echo "== find_package and pkg-config"
cmake -S consumer -B linked >linked.log || { cat linked.log && exit 1; }
cmake --build linked
linked/consumer
read -ra flags < <(pkg-config --cflags --libs orbinel-linux orbinel-headless)
"${CXX:-c++}" -std=c++20 consumer/main.cpp "${flags[@]}" -o by_modules
./by_modules

echo "== orbinel backend and play"
orbinel backend --port 0 >backend.log 2>&1 &
backend=$!
trap 'kill $backend 2>/dev/null || true' EXIT
for _ in {1..100}; do
    grep -q listening backend.log && break
    sleep 0.1
done
endpoint=$(sed -nE 's/^listening on (.*)/\1/p' backend.log)
orbinel play --endpoint "$endpoint" examples/first-session.json >trace || { tail trace && exit 1; }
grep -q session/stop backend.log || { echo "No session arrived" && cat backend.log && exit 1; }
kill "$backend"
wait "$backend" || true

echo "== dpkg --purge"
dpkg --purge "${packages[@]}" >purge.log 2>&1 || { cat purge.log && exit 1; }
left=$(find /usr /etc /var/lib/dpkg/info -xdev -name '*orbinel*')
[[ -z $left ]] || { echo "Left behind: $left" && exit 1; }
