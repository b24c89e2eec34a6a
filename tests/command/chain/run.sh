#!/usr/bin/env bash
# A chain of eleven shops, run from a centre with the playbooks of tools/ansible: one shop cannot be
# reached, one has a dead scale, one a wrong password, and in one another run holds the lock. The
# expected tables lie in "expected". Also: every command line of docs/chain.md, of the units, of the
# line for cron and of the task for Windows is one that tolvane does. Without root all of it is left out, and a
# line says so.
#
#   tests/command/chain/run.sh

source "$(dirname "${BASH_SOURCE[0]}")/shops.sh"
source "$CHAIN_TEST/checks.sh"

chain_end() {
    local code=$?
    chain_down || true
    rm -rf "$control"
    exit "$code"
}

# chain_play <playbook> [argument]...: as the centre's people call it. The code is Ansible's: 2 when a
# shop has failed, 4 when one cannot be reached.
chain_play() {
    local name=$1
    shift
    say "== $name $*"
    (cd "$ROOT/tools/ansible" &&
        chain_centre env LC_ALL=C.UTF-8 ANSIBLE_HOME="$CHAIN/ansible" ANSIBLE_LOG_PATH="$CHAIN/ansible.log" \
            ANSIBLE_FORKS=11 ANSIBLE_NOCOLOR=1 \
            ANSIBLE_SSH_CONTROL_PATH_DIR="$control" PYTHONDONTWRITEBYTECODE=1 \
            ansible-playbook -i "$CHAIN/inventory.yml" -e "tolvane_tables=$CHAIN/tables" "$name.yml" "$@") |
        tee "$CHAIN/play.out"
}

# chain_expect_code <code> <command>...
chain_expect_code() {
    local expected=$1 code=0
    shift
    "$@" || code=$?
    [ "$code" -eq "$expected" ] || fail "$* ended with $code instead of $expected"
}

# chain_recap <shop>: what the last playbook has counted for it.
chain_recap() {
    sed -n "/^PLAY RECAP/,\$s/^$1 *: *//p" "$CHAIN/play.out" | tr -s ' '
}

chain_make_package() {
    local folder=$CHAIN/package
    mkdir -p "$folder/DEBIAN" "$folder/usr/bin" "$folder/usr/lib/tolvane" "$folder/lib/systemd/system"
    printf '%s\n' "Package: tolvane" "Version: 0.1" "Architecture: $(dpkg --print-architecture)" \
        "Maintainer: The chain <root@localhost>" "Description: writes articles into label scales" \
        >"$folder/DEBIAN/control"
    strip -o "$folder/usr/bin/tolvane" "$BUILD/native/src/command/tolvane"
    cp "$ROOT/tools/systemd/tolvane-failed" "$folder/usr/lib/tolvane/"
    cp "$ROOT"/tools/systemd/*.{service,timer} "$folder/lib/systemd/system/"
    dpkg-deb -Znone --root-owner-group --build "$folder" "$CHAIN/tolvane.deb"
}

chain_make_inventory() {
    local shop name install schedule scales serial
    {
        cat <<INVENTORY
tolvane_shops:
  vars:
    ansible_user: root
    ansible_python_interpreter: /usr/bin/python3
    ansible_ssh_common_args: "${CHAIN_SSH[*]}"
    ansible_ssh_transfer_method: piped
    tolvane_ini: "$CHAIN/files/{{ inventory_hostname }}/Tolvane.ini"
    tolvane_database: /srv/shop/shop.fdb
    tolvane_groups: [dialout, firebird]
  hosts:
INVENTORY
        for shop in "${CHAIN_SHOPS[@]}"; do
            read -r name install schedule scales <<<"$shop"
            printf '    %s:\n      ansible_host: %s\n      tolvane_schedule: %s\n' \
                "$name" "$(network_address "$name")" "$schedule"
            case $install in
                package) printf '      tolvane_package: %s\n' "$CHAIN/tolvane.deb" ;;
                program) printf '      tolvane_program: %s\n' "$CHAIN/package/usr/bin/tolvane" ;;
            esac
            serial=$(grep -o '[0-9]:[A-Z]*:serial' <<<"$scales" | cut -d: -f1 || true)
            [ -z "$serial" ] || printf '      tolvane_serial: {COM%s: /srv/shop/COM%s}\n' "$serial" "$serial"
            [ "$name" != "$CHAIN_OF_SERVER" ] ||
                printf '      tolvane_database: "%s"\n      tolvane_user: %s\n      tolvane_password: wrong\n' \
                    "$(firebird_connection "$CHAIN/$name/srv/shop.fdb")" "$FIREBIRD_USER"
        done
    } >"$CHAIN/inventory.yml"
}

# chain_signal_scale <signal> <shop> <number>
chain_signal_scale() {
    pkill "-$1" -f -- "--ready-file $CHAIN/$2/$3.ready" || fail "scale $3 of $2 does not run"
}

# From here on a run holds the lock of the scale in s11: it waits for the first reply when it is halted, which a
# halted scale does not send.
chain_hold_lock() {
    chain_signal_scale STOP s11 1
    chain_at s11 setpriv --reuid=tolvane --regid=tolvane --init-groups tolvane write --no-progress \
        >"$CHAIN/held.out" 2>&1 &
    holder=$!
    wait_until 30 chain_at s11 pgrep -x tolvane || fail "no run has begun in s11"
    wait_until 30 chain_at s11 test -e /var/lib/tolvane/tcp-127.0.0.1-1001.lock ||
        fail "the run in s11 takes no lock"
    chain_at s11 pkill -STOP -x tolvane
    chain_signal_scale CONT s11 1
}

chain_release_lock() {
    chain_at s11 pkill -CONT -x tolvane
    chain_expect_code 0 wait "$holder"
    chain_held s11 1 | diff -u - <(printf '%s\n' "1 710 1" "2 600 1" "4 350 1" "5 99 1") ||
        fail "the run that held the lock has not written its scale"
}

# Bytes that the centre's network has carried so far.
chain_bytes() {
    chain_centre cat /sys/class/net/switch/statistics/{rx,tx}_bytes | paste -sd+ | { read -r sum; say "$((sum))"; }
}

# What asking costs the centre, for docs/chain.md; nothing here is asserted.
chain_measure_status() {
    local before started shops=$((${#CHAIN_SHOPS[@]} - 1))
    before=$(chain_bytes)
    started=$(date +%s%N)
    time chain_play status
    say "figure: status.yml: $((($(date +%s%N) - started) / 1000000)) ms for $shops shops and one that is away," \
        "$((($(chain_bytes) - before) / shops)) bytes a shop"
    say "figure: status --json of a shop with one scale: $(chain_at s03 tolvane status --json | wc -c) bytes," \
        "with three: $(chain_at s02 tolvane status --json | wc -c) bytes"
}

chain_change_price() {
    chain_sql "$CHAIN/$1/srv/shop.fdb" <<<"update PLUES set PLU_SELL_PRICE = 6.25 where PLU_NUMB = 1002; commit;"
}

# Articles 1, 2, 4 and 5 of scale 1, 1, 3 and 4 of scale 2, 1 and 4 of scale 3, each written once; but
# number 2 in s05 twice, the second time at 6.25.
chain_check_scales() {
    local shop name scale number link
    for shop in "${CHAIN_SHOPS[@]}"; do
        read -r name _ _ _ <<<"$shop"
        for scale in $(cut -d' ' -f4- <<<"$shop"); do
            IFS=: read -r number _ link <<<"$scale"
            [ "$name" != "$CHAIN_UNREACHABLE" ] && [ "$name" != "$CHAIN_OF_SERVER" ] && [ "$link" != off ] ||
                continue
            case $name-$number in
                s05-1) printf '%s\n' "1 710 1" "2 625 2" "4 350 1" "5 99 1" ;;
                *-1) printf '%s\n' "1 710 1" "2 600 1" "4 350 1" "5 99 1" ;;
                *-2) printf '%s\n' "1 710 1" "3 1234 1" "4 350 1" ;;
                *-3) printf '%s\n' "1 710 1" "4 350 1" ;;
            esac | diff -u - <(chain_held "$name" "$number") || fail "scale $number of $name holds something else"
        done
    done
}

# A second time nothing is changed, but what is new: the password in s10. Package and program, systemd
# and cron, with and without a password: each is in one of these shops.
chain_check_repeated() {
    local name changed
    sed -i "s/tolvane_password: wrong/tolvane_password: $FIREBIRD_PASSWORD/" "$CHAIN/inventory.yml"
    chain_expect_code 0 chain_play site --limit "s02,s03,s05,$CHAIN_OF_SERVER"
    for name in s02 s03 s05 "$CHAIN_OF_SERVER"; do
        changed=0
        [ "$name" != "$CHAIN_OF_SERVER" ] || changed=1
        [[ $(chain_recap "$name") == *" changed=$changed unreachable=0 failed=0 "* ]] ||
            fail "the second time, $name: $(chain_recap "$name")"
    done
    chain_expect_code 0 chain_play write --limit "$CHAIN_OF_SERVER"
    chain_held "$CHAIN_OF_SERVER" 1 | diff -u - <(printf '%s\n' "1 710 1" "2 600 1" "4 350 1" "5 99 1") ||
        fail "the shop with the new password has not written its scale"
}

refusal=$(network_refusal)
if ! have_root; then
    say "The chain is left out: $refusal."
    exit 0
fi
[ -z "$refusal" ] || fail "the chain needs networks of its own: $refusal"
control=$(mktemp -d)
holder=
trap chain_end EXIT
trap 'exit 130' INT TERM

chain_up
chain_start_server
chain_make_package
chain_make_inventory

chain_expect_code 4 chain_play site
[[ $(chain_recap "$CHAIN_UNREACHABLE") == *" unreachable=1 failed=0 "* ]] || fail "$CHAIN_UNREACHABLE was reached"
checks_files
checks_units
chain_hold_lock
chain_expect_code 2 chain_play write
checks_table write write-first
chain_measure_status
checks_table status status
chain_release_lock
chain_change_price s05
chain_expect_code 2 chain_play write
checks_table write write-second
chain_check_scales
chain_check_repeated
checks_words
checks_command_lines
say "All is as expected."
