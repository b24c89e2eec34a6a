#!/usr/bin/env bash
# Makes sure that the Debian packages of the named groups are installed; all groups without a name.
# Does nothing, and asks apt nothing, when they are. Needs root only when something is missing.
#
#   scripts/packages.sh [build] [check] [wine] [firebird] [winelib] [shop]

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

declare -A GROUPS_OF_PACKAGES=(
    [build]="g++ cmake ninja-build g++-mingw-w64-i686-posix libasio-dev nlohmann-json3-dev
             libcli11-dev googletest libbenchmark-dev firebird-dev"
    [check]="clang-format clang-tidy"
    [wine]="wine wine32:i386 wine64 fonts-wine fonts-dejavu-core fonts-liberation xvfb
            imagemagick xdotool locales"
    [firebird]="firebird3.0-server firebird3.0-utils firebird-dev libfbclient2:i386"
    [winelib]="libwine-dev:i386 wine32-tools:i386 gcc-multilib"
    [shop]="iproute2 socat procps"
)
ALL_GROUPS=(build check wine firebird winelib shop)
PREFERENCES=/etc/apt/preferences.d/zz-tolvane-setup
POLICY=/usr/sbin/policy-rc.d
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

# One administrator's command line that brings what is missing.
explain_to_administrator() {
    {
        say "These packages are missing, and installing them needs root. An administrator can run:"
        say ""
        has_i386 || printf '  dpkg --add-architecture i386 && '
        printf '  apt-get update; apt-get install --no-install-recommends'
        printf ' %s' "$@"
        printf '\n\n'
    } >&2
    exit 1
}

# A fresh Firebird package starts its server, which nobody asked for: keep it from starting while
# it is being installed. Where an administrator's policy exists, that one stays in charge.
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

# Gives "package=version" for every installed package whose i386 twin has to be installed in an
# older version: both must be of the same version, and apt does not step back unless told so.
older_twins() {
    local packages=("$@") name installed candidate
    apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks \
        --no-replaces --no-enhances "${packages[@]}" 2>/dev/null |
        sed -n 's/^\([a-z0-9][a-z0-9.+-]*\):i386$/\1/p' | sort -u |
        while read -r name; do
            installed=$(dpkg-query -W -f '${Multi-Arch} ${Version}' "$name:amd64" 2>/dev/null) || continue
            [ "${installed%% *}" = same ] || continue
            installed=${installed#* }
            candidate=$(apt-cache policy "$name:i386" | sed -n 's/^  Candidate: //p')
            case $candidate in "" | "(none)") continue ;; esac
            if dpkg --compare-versions "$installed" gt "$candidate"; then
                printf '%s=%s\n' "$name" "$candidate"
            fi
        done
}

# i386 packages need the very version of their amd64 twins. While one architecture's index of the
# security archive lags, that cannot be had from it: take both from the main archive then.
install_without_security() {
    printf 'Package: *\nPin: release l=Debian-Security\nPin-Priority: 100\n' >"$PREFERENCES"
    local twins
    mapfile -t twins < <(older_twins "$@")
    say "with older twins: ${twins[*]:-none}"
    "${INSTALL[@]}" --allow-downgrades "$@" "${twins[@]}"
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
    if ! has_i386 && [[ " $* " == *:i386\ * ]]; then
        say "adding the architecture i386"
        dpkg --add-architecture i386
    fi
    [ "$server_was_here" = yes ] || forbid_server_start
    dpkg --configure -a || say "an earlier, interrupted installation could not be ended"
    apt-get update -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 ||
        say "apt-get update ended with an error; going on with the indexes that are there"
    if ! "${INSTALL[@]}" "$@"; then
        say "the plain installation was refused; trying without the security archive"
        install_without_security "$@" ||
            fail "apt can install the packages neither with nor without the security archive." \
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
