#!/usr/bin/env bash
# The Debian packages of the release that is made, in a clean Debian 12 of its own (made once, from the archive):
# an older version is installed with all that it depends on, upgraded with settings, used until articles are in a
# scale, removed, which keeps the settings, and purged, which leaves what was there before. Needs root; without it
# all of it is left out, and a line says so.
#
#   tests/release/debian.sh

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/release-steps.sh"
source "$SCRIPTS/firebird.sh"
cd "$ROOT"

WORK=$BUILD/release-test-debian
CLEAN=$BUILD/debian-root
SYSTEM=$WORK/root
OLD_VERSION=0.9.0-1
EXPECTED=$'1 250\n2 340\n3 410'
# Which of the archive's packages are used besides those that the packages depend on: the engine for a database file,
# and what makes one.
ENGINE=(firebird3.0-server-core firebird3.0-utils)
APT=(apt-get -o APT::Sandbox::User=root -o Dpkg::Use-Pty=0 -y --no-install-recommends)

# in_system <root> <command>...: with processes of its own, which end with it.
in_system() {
    unshare --mount --pid --fork sh -c '
        mount --make-rprivate / && mount -t proc proc "$1/proc" && cd "$1" && shift &&
        exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive chroot . "$@"' \
        sh "$@"
}

packages_needed() {
    local package
    say "${ENGINE[*]}"
    for package in tolvane virtual-scale; do
        dpkg-deb -f "$RELEASE/${package}_$RELEASE_VERSION-1_amd64.deb" Depends
    done
}

archive_of_this_machine() {
    apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' 'Component: main' |
        sed -n '1p' | grep .
}

# With the files of all that will be installed: later runs need no archive.
make_clean_root() {
    if [ "$(cat "$CLEAN/depends" 2>/dev/null)" = "$(packages_needed)" ]; then return 0; fi
    rm -rf "$CLEAN"
    mkdir -p "$CLEAN"
    debootstrap --variant=minbase bookworm "$CLEAN/root" "${TOLVANE_MIRROR:-$(archive_of_this_machine)}"
    cp "$RELEASE"/*.deb "$CLEAN/root/tmp/"
    in_system "$CLEAN/root" "${APT[@]}" update
    in_system "$CLEAN/root" sh -c 'exec "$@" /tmp/*.deb' sh "${APT[@]}" install --download-only "${ENGINE[@]}"
    rm "$CLEAN"/root/tmp/*.deb
    packages_needed >"$CLEAN/depends"
}

make_older_packages() {
    local package
    for package in tolvane virtual-scale; do
        dpkg-deb -R "$RELEASE/${package}_$RELEASE_VERSION-1_amd64.deb" "$WORK/older"
        sed -i "s/^Version: .*/Version: $OLD_VERSION/" "$WORK/older/DEBIAN/control"
        printf 'older' >>"$WORK/older/usr/bin/$package"
        dpkg-deb -Znone --root-owner-group -b "$WORK/older" "$SYSTEM/tmp/${package}_${OLD_VERSION}_amd64.deb"
        rm -rf "$WORK/older"
    done
}

# A database file, for the engine in the process.
make_shop() {
    mkdir -p "$SYSTEM/srv"
    # The engine in this process, not a server.
    FIREBIRD_FOLDER=$WORK/engine
    firebird_make_folder
    firebird_write_settings 0
    firebird_isql -user "$FIREBIRD_USER" -sqldialect 3 <<SQL
create database '$WORK/shop.fdb' page_size 8192 default character set win1251;
SQL
    local script
    for script in demo/schema.sql tests/command/program/shop.sql; do
        firebird_isql -user "$FIREBIRD_USER" -sqldialect 3 -charset UTF8 -i "$script" "$WORK/shop.fdb"
    done
    mv "$WORK/shop.fdb" "$SYSTEM/srv/shop.fdb"
    chmod 666 "$SYSTEM/srv/shop.fdb"
    chmod 777 "$SYSTEM/srv"
}

# All but what apt, dpkg, adduser and the loader note for themselves.
content_of_system() {
    (cd "$SYSTEM" && find . -xdev \( -path ./var/lib/dpkg -o -path ./var/lib/apt -o -path ./var/cache -o -path ./var/log \
        -o -path ./tmp -o -path ./srv -o -path ./proc -o -path ./dev \) -prune -o \
        ! -path ./etc/ld.so.cache ! -path './etc/*-' ! -path ./run/adduser -printf '%P %y %m %U\n' | sort
    cat "$SYSTEM"/etc/{passwd,group} | sort)
}

installed_version() {
    [ "$(in_system "$SYSTEM" dpkg-query -W -f '${Version} ${db:Status-Status}' "$1" || true)" = "$2 installed" ] ||
        fail "$1 is not installed as $2"
    [ "$(in_system "$SYSTEM" dpkg-query -W -f '${Maintainer}' "$1")" = "$RELEASE_MAINTAINER" ] ||
        fail "$1 names another maintainer"
}

test_install_older() {
    in_system "$SYSTEM" sh -c 'exec "$@" /tmp/*_0.9.0-1_amd64.deb' sh "${APT[@]}" install
    installed_version tolvane "$OLD_VERSION"
    installed_version virtual-scale "$OLD_VERSION"
    in_system "$SYSTEM" id tolvane
    [ -d "$SYSTEM/var/lib/tolvane" ] && [ -d "$SYSTEM/etc/tolvane" ] || fail "folders are missing"
}

# The package's own examples, but for the shop and the scale.
make_settings() {
    local examples=$SYSTEM/usr/share/doc/tolvane/examples
    sed -e '/^\[SCALE2\]/,$d' -e 's/^TCPAddress=.*/TCPAddress=127.0.0.1/' -e 's/^TCPPort=.*/TCPPort=10010/' \
        "$examples/Tolvane.ini" >"$SYSTEM/etc/tolvane/Tolvane.ini"
    sed -e 's|^database = .*|database = /srv/shop.fdb|' -e '/^user\|^password\|^serial\|^#/d' "$examples/tolvane.conf" \
        >"$SYSTEM/etc/tolvane/tolvane.conf"
    printf 'OPTIONS=--model EVL --tcp 10010\n' >"$SYSTEM/etc/virtual-scale/counter1.conf"
    (cd "$SYSTEM/etc" && sha256sum tolvane/* virtual-scale/*) >"$WORK/settings"
}

expect_settings() {
    (cd "$SYSTEM/etc" && sha256sum --quiet -c "$WORK/settings") || fail "$1 changes the settings"
}

test_upgrade() {
    cp "$RELEASE"/*.deb "$SYSTEM/tmp/"
    in_system "$SYSTEM" sh -c 'exec "$@"' sh "${APT[@]}" install \
        "/tmp/tolvane_$RELEASE_VERSION-1_amd64.deb" "/tmp/virtual-scale_$RELEASE_VERSION-1_amd64.deb" "${ENGINE[@]}"
    installed_version tolvane "$RELEASE_VERSION-1"
    installed_version virtual-scale "$RELEASE_VERSION-1"
    expect_settings "an upgrade"
}

# As the nightly run does it, with its user and its folders. The scale runs as its unit says, and once more, from
# what it has kept.
test_use() {
    cat >"$SYSTEM/tmp/use.sh" <<'USE'
set -e
tolvane --version
virtual-scale --version
scale=$(sed -n 's/^ExecStart=//p' /lib/systemd/system/virtual-scale@.service | sed 's/%i/counter1/g; s/\$\$/$/g')
OPTIONS="$(sed -n 's/^OPTIONS=//p' /etc/virtual-scale/counter1.conf) --ready-file /tmp/ready"
export OPTIONS
mkdir -p /var/lib/virtual-scale
start_scale() {
    rm -f /tmp/ready
    eval "$scale &"
    until [ -s /tmp/ready ]; do sleep 0.1; done
}
end_scale() {
    kill "$!"
    wait "$!"
}
start_scale
setpriv --reuid=tolvane --regid=tolvane --init-groups env STATE_DIRECTORY=/var/lib/tolvane \
    tolvane write --all --no-progress
tolvane scales
end_scale
start_scale
end_scale
virtual-scale --show /var/lib/virtual-scale/counter1.json
USE
    in_system "$SYSTEM" timeout 120 sh /tmp/use.sh | tee "$WORK/use.out"
    grep -qxF "tolvane $RELEASE_VERSION" "$WORK/use.out" || fail "tolvane tells another version"
    grep -qxF "virtual-scale $RELEASE_VERSION" "$WORK/use.out" || fail "virtual-scale tells another version"
    [ "$(awk '$2 ~ /^[0-9]+\.[0-9][0-9]$/ { sub(/\./, "", $2); print $1, $2 + 0 }' "$WORK/use.out")" = "$EXPECTED" ] ||
        fail "the scale holds something else"
    [ -n "$(ls "$SYSTEM/var/lib/tolvane")" ] || fail "there is no ledger in /var/lib/tolvane"
    grep -q "Щанд месо" "$WORK/use.out" || fail "the name of the example's scale is not read as it stands there"
}

# The commands that the installed page has for a trial, but for the installation. All that the scale should hold it
# has acknowledged.
test_trial() {
    {
        printf 'set -e\nexport HOME=/srv\ncd /srv\n'
        sed -n '/^## Trying it$/,/^## W/s/^    //p' "$SYSTEM/usr/share/doc/tolvane/command.md" | grep -v '^apt '
    } >"$SYSTEM/tmp/trial.sh"
    in_system "$SYSTEM" timeout 300 sh /tmp/trial.sh >"$WORK/trial.out" 2>&1 || fail "$(cat "$WORK/trial.out")"
    # The status: number, name, last run, when, written, left out, held, version. As many as the window writes into
    # the demo's scale 1.
    [ "$(tail -n 1 "$WORK/trial.out" | awk '{ print $2, $3, $5, $6, $7 }')" = "Проба done 155 5 155" ] ||
        fail "the demo shop's articles are not in the scale: $(cat "$WORK/trial.out")"
    rm -r "$SYSTEM/srv/demo" "$SYSTEM/srv/.local"
}

# Nobody has asked for the nightly run; its units are right, and can be enabled.
test_units() {
    local unit
    [ -z "$(find "$SYSTEM/etc/systemd" -name '*tolvane*' -o -name 'virtual-scale*')" ] || fail "a unit has been enabled"
    for unit in tolvane.service tolvane.timer tolvane-failed@.service virtual-scale@.service; do
        [ -f "$SYSTEM/lib/systemd/system/$unit" ] || fail "$unit is not there"
    done
    grep -o '^ExecStart=[^ ]*' "$SYSTEM"/lib/systemd/system/{tolvane,virtual-scale}*.service | sed 's/.*=//' |
        while read -r unit; do [ -x "$SYSTEM$unit" ] || fail "a unit starts $unit, which is not there"; done
    if ! command -v systemctl >/dev/null; then
        say "Whether units can be enabled is left out: there is no systemctl."
        return
    fi
    systemctl --root="$SYSTEM" enable tolvane.timer virtual-scale@counter1.service
    [ -L "$SYSTEM/etc/systemd/system/timers.target.wants/tolvane.timer" ] || fail "the timer is not enabled"
}

test_manuals() {
    local page
    for page in tolvane virtual-scale; do
        gzip -dc "$SYSTEM/usr/share/man/man1/$page.1.gz" >"$WORK/$page.1"
        [ -z "$(groff -ww -man -Tutf8 -z "$WORK/$page.1" 2>&1)" ] || fail "roff finds something wrong with $page.1"
        grep -qF "\"${page/-/\\-} $RELEASE_VERSION\"" "$WORK/$page.1" || fail "$page.1 tells another version"
    done
    # Each option of the help is there.
    "$RELEASE_LINUX/simulator/virtual-scale" --help | sed -nE 's/^  ((-.,)?--[a-z,-]+).*/\1/p' | sed 's/-/\\-/g' |
        while read -r page; do grep -qF -- ".B $page" "$WORK/virtual-scale.1" || fail "virtual-scale.1 lacks $page"; done
}

# What a page refers to is there.
test_pages() {
    local folder=$SYSTEM/usr/share/doc/tolvane page target
    for page in "$folder"/*.md; do
        while read -r target; do
            [ -e "$folder/$target" ] || fail "$(basename "$page") refers to $target"
        done < <(grep -oE '\]\([^)#]+' "$page" | sed 's/^](//' | grep -v '^https:' | sort -u)
    done
    grep -qF '](chain.md)' "$folder/command.md" || fail "command.md does not refer to chain.md"
    [ -f "$folder/examples/ansible/README.md" ] || fail "the tools are not among the examples"
}

test_remove() {
    in_system "$SYSTEM" "${APT[@]}" remove tolvane virtual-scale
    expect_settings "removing"
    [ -n "$(ls "$SYSTEM/var/lib/tolvane")" ] || fail "removing deletes the ledgers"
    [ ! -e "$SYSTEM/usr/bin/tolvane" ] && [ ! -e "$SYSTEM/usr/bin/virtual-scale" ] || fail "a program is still there"
}

test_purge() {
    in_system "$SYSTEM" "${APT[@]}" purge tolvane virtual-scale "${ENGINE[@]}"
    in_system "$SYSTEM" "${APT[@]}" autoremove --purge
    content_of_system >"$WORK/after"
    diff -u "$WORK/before" "$WORK/after" || fail "purging leaves something else (- before, + after)"
}

scene() {
    say "== $1"
    "${@:2}"
}

if ! have_root; then
    say "The packages' test is left out: a Debian of its own needs root."
    exit 0
fi
"$SCRIPTS/packages.sh" release firebird check
rm -rf "$WORK"
mkdir -p "$WORK"
scene "Make a clean Debian" make_clean_root
cp -a "$CLEAN/root" "$SYSTEM"
make_older_packages
make_shop
content_of_system >"$WORK/before"
scene "Install an older version" test_install_older
make_settings
scene "Upgrade" test_upgrade
scene "Articles by the command" test_use
scene "The trial of the command's page" test_trial
scene "Units" test_units
scene "Manual pages" test_manuals
scene "Pages" test_pages
scene "Remove" test_remove
scene "Purge" test_purge
rm -rf "$SYSTEM"
say "All is as expected."
