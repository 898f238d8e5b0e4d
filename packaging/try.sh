#!/bin/sh
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# usage: try.sh ROOT PACKAGE_FOLDER BUILD_PACKAGE...
# Installs, uses and removes the Debian packages in ROOT, a fresh Debian 12. BUILD_PACKAGE are the Debian packages
# needed to build a program with the library. Must run as root. Uses its own mount and PID namespaces, so nothing that
# it starts or mounts outlives it.
set -eu
if [ "${1:-}" != --inside ]; then
    exec unshare --mount --pid --fork --kill-child "$0" --inside "$@"
fi
root=$2
packages=$3
shift 3
source=$(cd "$(dirname "$0")/.." && pwd)
mount -t proc proc "$root/proc"
cp /etc/resolv.conf "$root/etc/"
echo "127.0.0.1 localhost" >"$root/etc/hosts"
cp -r "$packages" "$root/tmp/packages"
cp -r "$source/samples" "$source/tests/package" "$root/tmp/"

inside() {
    chroot "$root" /usr/bin/env -i HOME=/root LC_ALL=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin \
        DEBIAN_FRONTEND=noninteractive QT_QPA_PLATFORM=offscreen "$@"
}
install() {
    inside apt-get install -yq --no-install-recommends "$@" >"$root/tmp/apt.log" 2>&1 ||
        { cat "$root/tmp/apt.log"; exit 1; }
}
has() { inside dpkg -s "$1" 2>/dev/null | grep -qx 'Status: install ok installed'; }
step() { echo "-- $*"; }
fail() { echo "FAILED: $*" >&2; exit 1; }

# Prints a command prefix that runs the command as another user.
as() {
    echo "setpriv --reuid $1 --regid $(inside id -gn "$1") --init-groups --no-new-privs"
}

# The packages become an archive, so that apt resolves their dependencies.
(cd "$root/tmp/packages" && dpkg-scanpackages --multiversion . >Packages 2>"$root/tmp/apt.log") ||
    { cat "$root/tmp/apt.log"; exit 1; }
names=$(sed -n 's/^Package: //p' "$root/tmp/packages/Packages")
echo "deb [trusted=yes] file:/tmp/packages ./" >"$root/etc/apt/sources.list.d/tried.list"
inside apt-get update -q >"$root/tmp/apt.log" 2>&1 || { cat "$root/tmp/apt.log"; exit 1; }

step "install and run the command"
install songlrc
inside songlrc parse /tmp/samples/the-star.lrc | head -n 3

step "install the service"
install songlrc-service
for package in libqt6gui6 libqt6widgets6 libqvsonglrc-dialog1 libqvsonglrc-dev; do
    ! has $package || fail "the command or the service depends on $package"
done

step "start the service as its unit does, and search it as another user"
unit=$root/usr/lib/systemd/system/songlrc-service.service
value() { sed -n "s/^$1=//p" "$unit" | sed 's,%S,/var/lib,g'; }
user=$(value User)
for folder in $(value StateDirectory); do # systemd does this first
    chroot "$root" install -d -o "$user" -g "$user" "/var/lib/$folder"
done
cp "$source/samples/auld-lang-syne.lrc" "$root/var/lib/songlrc-service/library/"
# In a network namespace, where the unit's port is free.
unshare --net sh -euc "ip link set lo up; chroot '$root' sh -eu" <<TEXT
    $(as "$user") $(value ExecStart) >/tmp/service.log &
    service=\$!
    for i in \$(seq 100); do ! grep -q ^url: /tmp/service.log || break; sleep 0.1; done
    $(as nobody) songlrc search --title syne --service localhost:8443 \
        --ca-file /var/lib/songlrc-service/authority.pem
    if $(as nobody) cat /var/lib/songlrc-service/server-key.pem 2>/dev/null; then exit 1; fi
    kill \$service
    wait \$service
TEXT

step "install and open the editor"
install songlrc-editor
status=0
inside HOME=/tmp timeout 3 songlrc-editor /tmp/samples/the-star.lrc 2>/dev/null || status=$?
[ "$status" = 124 ] || fail "songlrc-editor ended with $status"
! has libqvsonglrc-dev || fail "the editor depends on libqvsonglrc-dev"

step "build programs with the development package"
install libqvsonglrc-dev "$@"
inside sh -euc 'cmake -S /tmp/package/consumer -B /tmp/consumer && cmake --build /tmp/consumer &&
    ctest --test-dir /tmp/consumer --output-on-failure' >"$root/tmp/build.log" 2>&1 || { cat "$root/tmp/build.log"; exit 1; }
tail -n 3 "$root/tmp/build.log"
inside /tmp/package/pkg-config.sh g++ "" /tmp/pkgconfig 2>"$root/tmp/build.log" || { cat "$root/tmp/build.log"; exit 1; }

step "remove and purge them"
# shellcheck disable=SC2086 # a list of words
inside dpkg -L $names | grep '^/[^.]' | sort -u >"$root/tmp/owned"
# shellcheck disable=SC2086
inside apt-get purge -yq $names >"$root/tmp/apt.log" 2>&1 || { cat "$root/tmp/apt.log"; exit 1; }
library=$root/var/lib/songlrc-service/library
[ -e "$library/auld-lang-syne.lrc" ] || fail "purging deleted the administrator's lyrics"
rm -r "$root/var/lib/songlrc-service"

while read -r path; do
    if [ ! -d "$root$path" ]; then
        [ ! -e "$root$path" ] || fail "$path remains"
    elif ! inside dpkg -S "$path" >/dev/null 2>&1; then
        fail "the folder $path remains"
    fi
done <"$root/tmp/owned"
left=$(cd "$root" && find . -xdev \( -path ./tmp -o -path ./proc \) -prune -o -iname '*songlrc*' -print)
[ -z "$left" ] || fail "these remain: $left"
! grep -i songlrc "$root/etc/passwd" "$root/etc/group" "$root/etc/shadow" "$root/var/lib/dpkg/status" ||
    fail "the user or package state remains"
step "done"
