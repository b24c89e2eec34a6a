#!/usr/bin/env bash
# Makes sure that the Debian packages of the named groups are installed; without a name all groups that
# test.sh and demo.sh need. Does nothing, and asks apt nothing, when they are. Needs root only when
# something is missing.
#
#   scripts/packages.sh [build] [headless] [check] [wine] [firebird] [winelib] [shop] [trace] [chain]
#                       [installer] [fuzz] [browser] [coverage] [valgrind] [release] [guide] [bench] [pascal]

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# apt is read below, so it has to speak English.
export LC_ALL=C.UTF-8

declare -A GROUPS_OF_PACKAGES=(
    [build]="g++ cmake ninja-build g++-mingw-w64-i686-posix libasio-dev libboost-dev
             nlohmann-json3-dev libcli11-dev googletest libgtest-dev libbenchmark-dev firebird-dev"
    [headless]="g++ cmake ninja-build libasio-dev libboost-dev nlohmann-json3-dev libcli11-dev
                firebird-dev firebird3.0-server-core firebird3.0-utils iproute2"
    [check]="clang-format clang-tidy lld groff-base python3"
    [wine]="wine wine32:i386 wine64 fonts-wine fonts-dejavu-core fonts-liberation xvfb
            imagemagick locales"
    [firebird]="firebird3.0-server firebird3.0-server-core firebird3.0-utils firebird-dev
                libfbclient2:i386"
    [winelib]="libwine-dev:i386 wine32-tools:i386 gcc-multilib"
    [shop]="iproute2 socat procps"
    [trace]="tshark"
    [chain]="ansible-core dropbear-bin openssh-client python3-apt systemd libcap2-bin iproute2 procps"
    [fuzz]="clang-16 libclang-rt-16-dev llvm-16"
    [browser]="chromium fonts-dejavu-core imagemagick python3 zbar-tools"
    [coverage]="gcovr"
    [valgrind]="valgrind"
    [installer]="nsis zip unzip"
    [release]="debhelper lintian debootstrap python3"
    [guide]="cmark-gfm weasyprint python3 fonts-dejavu-core"
    [bench]="fp-compiler fp-units-db"
    [pascal]="fp-compiler fpc-source-3.2.2"
)
ALL_GROUPS=(build check wine firebird winelib shop trace chain installer guide fuzz browser bench pascal)
PREFERENCES=/etc/apt/preferences.d/zz-tolvane-setup
POLICY=/usr/sbin/policy-rc.d
# Beside the indexes, so that it goes with them.
UPDATED=/var/lib/apt/lists/tolvane-updated
INSTALL=(apt-get install -y --no-install-recommends --no-remove
         -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# wanted_packages <group>...: their packages, each once.
wanted_packages() {
    local group
    for group in "$@"; do
        [ -n "${GROUPS_OF_PACKAGES[$group]:-}" ] || fail "packages.sh: there is no group \"$group\""
        tr -s ' \n' '\n' <<<"${GROUPS_OF_PACKAGES[$group]}"
    done | sort -u
}

missing_packages() {
    local package
    for package in $(wanted_packages "$@"); do
        is_installed "$package" || printf '%s\n' "$package"
    done
}

has_i386() {
    dpkg --print-foreign-architectures | grep -qx i386
}

# One administrator's command line that installs what is missing.
explain_to_administrator() {
    {
        say "These packages are missing, and installing them needs root. An administrator can run:"
        say ""
        has_i386 || [[ " $* " != *:i386\ * ]] || printf '  dpkg --add-architecture i386;'
        printf '  apt-get update; apt-get install --no-install-recommends'
        printf ' %s' "$@"
        printf '\n\n'
    } >&2
    exit 1
}

# A fresh Firebird package starts its server: prevent that while it is being installed; an existing
# policy is kept.
forbid_server_start() {
    [ -e "$POLICY" ] && return 0
    cat >"$POLICY" <<'POLICY_TEXT'
#!/bin/sh
# tolvane set-up: the Firebird server is installed, not started
case "$*" in *firebird*) exit 101 ;; esac
exit 0
POLICY_TEXT
    chmod 755 "$POLICY"
}

allow_server_start() {
    if [ -e "$POLICY" ] && grep -q '^# tolvane set-up' "$POLICY"; then
        rm -f "$POLICY"
    fi
}

# Only called when the server's package was not here before.
keep_server_off() {
    is_installed firebird3.0-server || return 0
    if [ -d /run/systemd/system ]; then
        systemctl disable --now firebird3.0.service
    else
        update-rc.d firebird3.0 disable
        start-stop-daemon --stop --oknodo --retry 10 --user firebird --exec /usr/sbin/firebird
    fi || say "the system's Firebird server could not be switched off"
}

# Runs at most once in ten minutes, unless $UPDATED has been removed.
update_indexes() {
    [ -z "$(find "$UPDATED" -mmin -10 2>/dev/null)" ] || return 0
    if apt-get update -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3; then
        touch "$UPDATED"
    else
        say "apt-get update ended with an error; going on with the indexes that are there"
    fi
}

# candidates <architecture> <name>...: lines "name version" of what apt would install, sorted.
candidates() {
    local architecture=$1
    shift
    apt-cache policy "${@/%/:$architecture}" |
        awk '/^[^ ]/ { name = $1; sub(/:.*/, "", name) }
             /^  Candidate:/ && $2 != "(none)" { print name, $2 }' |
        sort
}

# uneven_sources <package>...: the source packages of which the two architectures would get different
# versions, among all that the packages depend on.
uneven_sources() {
    local names
    mapfile -t names < <(
        apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks \
            --no-replaces --no-enhances "$@" |
            sed -n 's/^\([a-z0-9][a-z0-9.+-]*\):i386$/\1/p' | sort -u
    )
    mapfile -t names < <(
        join <(candidates amd64 "${names[@]}") <(candidates i386 "${names[@]}") |
            awk '$2 "" != $3 "" { print $1 }'
    )
    [ ${#names[@]} -gt 0 ] || return 0
    apt-cache show --no-all-versions "${names[@]/%/:i386}" |
        awk '/^Package:/ { name = $2 } /^Source:/ { name = $2 } /^Multi-Arch: same/ { same = 1 }
             /^$/ { if (same) print name; same = 0 }' | sort -u
}

# i386 packages need the very version of their amd64 twins. While one architecture's index of the
# security archive lags, that cannot be had from it: take the uneven ones from the main archive,
# stepping back where a newer one is installed.
install_without_security() {
    local sources
    mapfile -t sources < <(uneven_sources "$@")
    say "taken from the main archive: ${sources[*]:-nothing}"
    if [ ${#sources[@]} -gt 0 ]; then
        printf 'Package:%s\nPin: release l=Debian\nPin-Priority: 1001\n' \
            "$(printf ' src:%s' "${sources[@]}")" >"$PREFERENCES"
    fi
    "${INSTALL[@]}" --allow-downgrades "$@"
}

restore_settings() {
    rm -f "$PREFERENCES"
    allow_server_start
}

install_packages() {
    local server_was_here=no
    is_installed firebird3.0-server && server_was_here=yes
    export DEBIAN_FRONTEND=noninteractive
    trap restore_settings EXIT
    # An earlier group may ask for it, since each new architecture needs an update.
    if ! has_i386 && { [ "${TOLVANE_I386_SOON:-}" = 1 ] || [[ " $* " == *:i386\ * ]]; }; then
        say "adding the architecture i386"
        dpkg --add-architecture i386
        rm -f "$UPDATED"
    fi
    [ "$server_was_here" = yes ] || forbid_server_start
    dpkg --configure -a || say "an earlier, interrupted installation could not be ended"
    update_indexes
    if ! "${INSTALL[@]}" "$@"; then
        say "the plain installation was refused; trying with the main archive's versions"
        rm -f "$UPDATED"
        update_indexes
        install_without_security "$@" ||
            fail "apt can install the packages neither plainly nor from the main archive." \
                "Its reasons stand above; when an index failed to download, try again later."
    fi
    [ "$server_was_here" = yes ] || keep_server_off
    restore_settings
    trap - EXIT
}

ensure_packages() {
    [ $# -gt 0 ] || set -- "${ALL_GROUPS[@]}"
    command -v apt-get >/dev/null || fail "this set-up is for Debian 12: there is no apt-get here"
    # An earlier run that was killed may have left these.
    if have_root; then restore_settings; fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    say "missing: ${missing[*]}"
    have_root || explain_to_administrator "${missing[@]}"
    install_packages "${missing[@]}"
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] || fail "apt ended well, yet these are missing: ${missing[*]}"
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    ensure_packages "$@"
fi
