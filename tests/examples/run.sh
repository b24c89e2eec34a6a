#!/usr/bin/env bash
# Runs the example hosts with the module and a small shop: each shows the operation's title, opens the list, prints
# it, is told that it has closed, and ends. The Wine prefix, the display, the Firebird server and Free Pascal must be
# there.
#
#   tests/examples/run.sh <Windows build folder>

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/pascal.sh"

windows=$1
folder=$BUILD/example-hosts
expected=$ROOT/tests/examples/printed.txt

# In a subshell that the host takes over, in its folder: what it prints lies there.
host_run() (
    cd "$folder/$1"
    wine_command timeout 120 wine "./$1.exe" "$(firebird_connection "$folder/shop.fdb")" SYSDBA \
        "$FIREBIRD_PASSWORD" </dev/null
)

host_act() {
    wine_command timeout 120 wine "$windows/demo/driver/window-driver.exe" --seconds 60 "$@" </dev/null
}

# What the host has printed, its time as letters, as far as the table of the module's columns has four.
host_printed() {
    iconv -f CP1251 -t UTF-8 "$folder/$1/printed.txt" | tr -d '\r' | cut -f1-4 |
        sed '2s/^[0-9][0-9]\.[0-9][0-9]\.[0-9]\{4\} - [0-9][0-9]\.[0-9][0-9]\.[0-9][0-9]$/DD.MM.YYYY - HH.NN.SS/'
}

host_has_printed() {
    [ -e "$folder/$1/printed.txt" ] && diff "$expected" <(host_printed "$1") >"$folder/$1/difference"
}

# host_test <name>: the folder holds NAME.exe.
host_test() {
    local status=0 pid
    mkdir -p "$folder/$1/Operations"
    cp "$windows/src/entry/Tolvane.dll" "$folder/$1/Operations/"
    host_run "$1" &
    pid=$!
    host_act caption ExampleHost "Програмиране на везни ELICOM EVL/ETS"
    host_act command ExampleHost 100
    host_act rows aDBGrid 6
    host_act click PrintBtn
    wait_until 60 host_has_printed "$1" || fail "$1 prints something else:" "$(cat "$folder/$1/difference")"
    host_act close TElicomPluScaleListForm
    host_act gone TElicomPluScaleListForm
    host_act close ExampleHost
    wait "$pid" || status=$?
    [ "$status" -eq 0 ] || fail "$1 ends with $status"
    say "$1: the list of 6 articles was shown, printed and closed"
}

rm -rf "$folder"
mkdir -p "$folder"/host_{c,pascal}
cp "$windows/examples/c/host_c.exe" "$folder/host_c/"
pascal_compile "$ROOT/examples/pascal/Host.pas" "$folder/host_pascal/host_pascal.exe"
firebird_database "$folder/shop.fdb" "$ROOT/tests/module/schema.sql" "$ROOT/tests/module/shop.sql"
wine_session
host_test host_c
host_test host_pascal
