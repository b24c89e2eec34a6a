# shellcheck shell=bash
# Sourced by run.sh: what must hold in the chain of shops.sh.

# Laid down as said, by the role or by the package, and with nothing for anybody else to write or, of
# the password, to read.
checks_files() {
    local shop name schedule
    for shop in "${CHAIN_SHOPS[@]}"; do
        read -r name _ schedule _ <<<"$shop"
        [ "$name" != "$CHAIN_UNREACHABLE" ] || continue
        diff -u - <(checks_files_of "$name") <<EXPECTED || fail "files in $name"
755 root root /etc/tolvane
644 root root /etc/tolvane/Tolvane.ini
644 root root /etc/tolvane/tolvane.conf
$([ "$name" != "$CHAIN_OF_SERVER" ] || say "640 root tolvane /etc/tolvane/password")
750 tolvane tolvane /var/lib/tolvane
750 root tolvane /usr/bin/tolvane
755 root root /usr/lib/tolvane/tolvane-failed
/usr/bin/tolvane cap_net_bind_service=ep
tolvane dialout firebird
tolvane /var/lib/tolvane /usr/sbin/nologin
$([ "$schedule" != cron ] || say "644 root root /etc/cron.d/tolvane")
$([ "$schedule" != systemd ] || say "644 root root /etc/systemd/system/tolvane.timer.d/schedule.conf")
$([ "$schedule" != systemd ] || say "/etc/systemd/system/timers.target.wants/tolvane.timer")
EXPECTED
        chain_at "$name" cat /etc/tolvane/Tolvane.ini | cmp - "$CHAIN/files/$name/Tolvane.ini"
    done
}

# In the order of the list above, with an empty line for what is not there.
checks_files_of() {
    # shellcheck disable=SC2016
    chain_at "$1" bash -c '
        for file in /etc/tolvane{,/Tolvane.ini,/tolvane.conf,/password} /var/lib/tolvane /usr/bin/tolvane \
            /usr/lib/tolvane/tolvane-failed; do stat -c "%a %U %G %n" "$file" 2>/dev/null || echo; done
        getcap /usr/bin/tolvane
        id -nG tolvane
        getent passwd tolvane | cut -d: -f1,6,7 | tr : " "
        for file in /etc/cron.d/tolvane /etc/systemd/system/tolvane.timer.d/schedule.conf; do
            stat -c "%a %U %G %n" "$file" 2>/dev/null || echo; done
        ls /etc/systemd/system/timers.target.wants/tolvane.timer 2>/dev/null || echo'
}

# systemd finds nothing to say about the units, laid down by the role (s04) and by the package (s02).
checks_units() {
    local shop found
    for shop in s04 s02; do
        found=$(chain_at "$shop" systemd-analyze verify tolvane.service tolvane.timer \
            tolvane-failed@tolvane.service 2>&1) || fail "systemd refuses the units in $shop: $found"
        [ -z "$found" ] || fail "systemd says of the units in $shop: $found"
    done
    chain_at s04 systemd-analyze security --offline=true --threshold=30 --no-pager tolvane.service >/dev/null ||
        fail "the unit's exposure is more than 3 of 10"
    found=$(chain_at s04 cat /etc/systemd/system/tolvane.timer{,.d/schedule.conf} | grep -E '^(OnCalendar|Persistent|Randomized)')
    diff -u - <(say "$found") <<'EXPECTED' || fail "the timer"
OnCalendar=*-*-* 03:00
Persistent=true
RandomizedDelaySec=30m
OnCalendar=
OnCalendar=*-*-* 03:00
RandomizedDelaySec=30m
EXPECTED
}

# checks_table <table> <expected>: row by row, but for times, numbers of processes, this machine's paths and the
# reason for which SSH fails.
# The text for people holds the same words.
checks_table() {
    sed -E -e "s#$CHAIN#CHAIN#g" -e "s#127\.0\.0\.1/[0-9]+:#SERVER:#" -e 's/process [0-9]+/process N/' \
        -e 's/[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}Z/TIME/' -e 's/,[0-9]+\.[0-9]+,(yes|no),([^,]*)$/,SECONDS,\1,\2/' \
        -e 's/(,unreachable,,*)[^,].*/\1REASON/' "$CHAIN/tables/$1.csv" >"$CHAIN/$2.csv"
    diff -u "$CHAIN_TEST/expected/$2.csv" "$CHAIN/$2.csv" || fail "the table $2 (- expected, + gathered)"
    diff <(tr -d '", ' <"$CHAIN/tables/$1.csv") <(tr -d '", ' <"$CHAIN/tables/$1.txt") ||
        fail "the text of $2 is not its table"
    cat "$CHAIN/tables/$1.txt"
}

# The exit codes have the same words everywhere.
checks_words() {
    local code words found
    while IFS='|' read -r code words; do
        found=$("$ROOT/tools/systemd/tolvane-failed" name "$code")
        [ "$found" = "name: $words ($code)" ] || fail "tolvane-failed says \"$found\" of $code"
        grep -qxF "  $code: $words" "$ROOT/tools/ansible/exit-codes.yml" ||
            fail "exit-codes.yml does not say \"$words\" of $code"
        grep -qE "^\| $code \| $words \|" "$ROOT/docs/chain.md" || fail "chain.md does not say \"$words\" of $code"
    done <<'WORDS'
0|done
1|internal error
2|usage or configuration
3|some scales or articles failed
4|database
5|no scale reached
6|check or scales found problems
11|another run works on the scale
130|interrupted
WORDS
    # As systemd calls it.
    found=$(MONITOR_SERVICE_RESULT=exit-code MONITOR_EXIT_CODE=exited MONITOR_EXIT_STATUS=3 \
        "$ROOT/tools/systemd/tolvane-failed" tolvane)
    [ "$found" = "tolvane: some scales or articles failed (3)" ] || fail "tolvane-failed says \"$found\""
    found=$(MONITOR_SERVICE_RESULT=signal MONITOR_EXIT_CODE=killed MONITOR_EXIT_STATUS=KILL \
        "$ROOT/tools/systemd/tolvane-failed" tolvane)
    [ "$found" = "tolvane: unexpected end: killed, signal (KILL)" ] || fail "tolvane-failed says \"$found\""
}

# Every command line that people are told, one per line, with what stands before and after it cut off.
checks_all_command_lines() {
    python3 "$CHAIN_TEST/task.py" "$ROOT/tools/windows/tolvane.xml" /tmp/tolvane.log
    sed -n 's/^ExecStart=.*\(tolvane .*\)/\1/p' "$ROOT/tools/systemd/tolvane.service"
    chain_at s03 sed -n 's#^[0-9].* tolvane /usr/bin/\(tolvane .*\) >/dev/null .*#\1#p' /etc/cron.d/tolvane
    grep -oE '`tolvane [^`]*`' "$ROOT/docs/chain.md" | tr -d '`'
    sed -nE 's#^    (.* |.*/)?(tolvane [a-z]+.*)#\2#p' "$ROOT/docs/chain.md" | sed -E 's/ *([|>#].*)?$//'
}

# They are done in s02, as the user whom the unit has and with its rights. A line that tolvane does not
# know ends with 2.
checks_command_lines() {
    local line words code lines=0
    while read -r line; do
        read -ra words <<<"$line"
        code=0
        chain_at s02 setpriv --reuid=tolvane --regid=tolvane --init-groups --inh-caps=+net_bind_service \
            --ambient-caps=+net_bind_service --no-new-privs "${words[@]}" >"$CHAIN/line.out" 2>&1 || code=$?
        say "$code  $line"
        if [ "$code" -ne 0 ]; then
            cat "$CHAIN/line.out"
            fail "\"$line\" ended with $code"
        fi
        lines=$((lines + 1))
    done < <(checks_all_command_lines | sort -u)
    [ "$lines" -ge 5 ] || fail "only $lines command lines were found"
}
