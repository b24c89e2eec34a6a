# shellcheck shell=bash disable=SC1091
# Sourced: 32-bit Windows programs under Wine, in a prefix and on a display of their own.
#
#   wine_prefix_make             makes the prefix (build/wine) when it is not there; a lane's (build/wine-NAME)
#                                is a copy of it
#   display_start, display_stop  a private X display, 1280x900, with a number of its own
#   wine_regional <code page> <separator>
#                                1251|1252 and comma|point: the system code page, and the user's
#                                number, date and time formats, of every program that follows
#   wine_resolution <dots per inch>
#                                of every program that follows; wine_prefix_make sets 96 again
#   wine_run <program> <argument>...
#                                runs the program and returns its exit code
#   wine_com_port <COM5> <path>  maps a port name to a pty; ends the prefix's Wine processes
#   screenshot <file.png>        the private display as a picture
#   wine_stop                    ends every Wine process of the prefix, and no other
#
#   wine_command <command>...    runs any command (ctest, for one) with all that these need
#
# TOLVANE_WINE names another prefix. With TOLVANE_INTERACTIVE=1 windows go to the user's display.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

WINE_PREFIX=${TOLVANE_WINE:-$BUILD/wine$LANE}
DISPLAY_FOLDER=$BUILD/display$LANE
LOCALE_FOLDER=$BUILD/locale

# In a subshell: runs one command with what every Wine process of this project needs. The native
# client library that fbclient.dll calls takes its message texts from FIREBIRD_MSG. The locale is
# set by env, as bash itself warns of one that the machine does not have.
wine_command() (
    export WINEPREFIX=$WINE_PREFIX WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
    export WINEDLLPATH=$BUILD/fbclient
    export FIREBIRD_MSG=/usr/lib/x86_64-linux-gnu/firebird/3.0
    unset LANG LANGUAGE LC_CTYPE
    if [ -e "$DISPLAY_FOLDER/number" ] && [ "${TOLVANE_INTERACTIVE:-}" != 1 ]; then
        DISPLAY=:$(cat "$DISPLAY_FOLDER/number")
        export DISPLAY
    fi
    exec env LOCPATH="$LOCALE_FOLDER" LC_ALL="$(wine_locale "$(wine_state codepage)")" "$@"
)

# Wine takes the system code page from the language of the locale, and the file names of the
# machine from its character set, which therefore has to be UTF-8 in both.
wine_locale() {
    case $1 in
        1251) printf 'bg_BG.UTF-8' ;;
        *) printf 'C.UTF-8' ;;
    esac
}

# The Bulgarian locale is made in the build folder; the machine's own locales stay as they are.
wine_locale_make() {
    [ -d "$LOCALE_FOLDER/bg_BG.UTF-8" ] && return 0
    rm -rf "$LOCALE_FOLDER"
    mkdir -p "$LOCALE_FOLDER"
    localedef -i bg_BG -f UTF-8 "$LOCALE_FOLDER/new"
    mv "$LOCALE_FOLDER/new" "$LOCALE_FOLDER/bg_BG.UTF-8"
}

wine_state() {
    cat "$WINE_PREFIX/tolvane-$1" 2>/dev/null || true
}

# Wine's own processes (the server, its services, the desktop) start with the first program and
# outlive it. They are started apart, so that they keep no pipe of a caller open and do not get the
# terminal's Ctrl+C. They stay for a minute after the last program, which makes the next start quick.
# The client library is put where its installer would, so that programs without one of their own
# find it.
wine_session() {
    local client=$BUILD/fbclient/i386-windows/fbclient.dll system=$WINE_PREFIX/drive_c/windows/system32
    if [ "$client" -nt "$system/fbclient.dll" ] && [ -d "$system" ]; then
        cp -f "$client" "$system/fbclient.dll"
    fi
    wine_command setsid -w wineserver -p60 >/dev/null 2>&1 </dev/null || return 0
    wine_command setsid -w wine wineboot >/dev/null 2>&1 </dev/null
}

wine_stop() {
    [ -d "$WINE_PREFIX" ] || return 0
    wine_command wineserver -k >/dev/null 2>&1 || true
    wine_command timeout 60 wineserver -w || fail "the Wine processes of $WINE_PREFIX do not end"
}

wine_run() {
    wine_session
    wine_command wine "$@"
}

# A prefix that no lane's own step has changed yet.
wine_prefix_make_first() {
    wine_locale_make
    [ ! -e "$WINE_PREFIX/tolvane-made" ] || return 0
    wine_stop
    rm -rf "$WINE_PREFIX"
    mkdir -p "$(dirname "$WINE_PREFIX")"
    wine_command env -u DISPLAY timeout 300 wineboot -i
    wine_stop
    [ -e "$WINE_PREFIX/system.reg" ] || fail "wineboot made no prefix in $WINE_PREFIX"
    printf '96\n' >"$WINE_PREFIX/tolvane-resolution"
    touch "$WINE_PREFIX/tolvane-made"
}

# Two lanes may want their copies at once.
wine_prefix_copy() (
    [ ! -e "$WINE_PREFIX/tolvane-made" ] || return 0
    flock 9
    wine_stop
    copy=$WINE_PREFIX WINE_PREFIX=$BUILD/wine-first
    wine_prefix_make_first
    rm -rf "$copy" "$copy.new"
    cp -a "$WINE_PREFIX" "$copy.new"
    mv "$copy.new" "$copy"
) 9>"$BUILD/wine-first.lock"

wine_prefix_make() {
    if [ -n "$LANE" ]; then
        wine_prefix_copy
    else
        wine_prefix_make_first
    fi
    # The package's own fonts (the signs of the caption buttons are one) are not found otherwise.
    ln -sfn /usr/share/wine/fonts/*.ttf "$WINE_PREFIX/drive_c/windows/Fonts/"
    wine_desktop
    wine_resolution 96
}

# wine_import <file>: a registry file into the prefix.
wine_import() {
    wine_run regedit /S "Z:${1//\//\\}"
    wine_stop
}

# No window manager runs on the private display: a desktop of Wine's own draws the captions there
# and gives the keys to the active window. The user's display has a manager, and gets plain windows.
wine_desktop() {
    local desktop='"Default"' file=$WINE_PREFIX/drive_c/tolvane-desktop.reg
    [ "${TOLVANE_INTERACTIVE:-}" = 1 ] && desktop=-
    [ "$(wine_state desktop)" = "$desktop" ] && return 0
    wine_stop
    cat >"$file" <<REGISTRY
REGEDIT4

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer]
"Desktop"=$desktop

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="1280x900"
REGISTRY
    wine_import "$file"
    printf '%s\n' "$desktop" >"$WINE_PREFIX/tolvane-desktop"
}

wine_resolution() {
    local file=$WINE_PREFIX/drive_c/tolvane-resolution.reg
    [ "$(wine_state resolution)" != "$1" ] || return 0
    wine_stop
    rm -f "$WINE_PREFIX/tolvane-resolution"
    printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Control Panel\\Desktop]\n"LogPixels"=dword:%08x\n' "$1" >"$file"
    wine_import "$file"
    printf '%s\n' "$1" >"$WINE_PREFIX/tolvane-resolution"
}

# regional_values <separator>: the user's formats as the registry keeps them.
regional_values() {
    case $1 in
        comma)
            cat <<'VALUES'
"sDecimal"=","
"sThousand"=" "
"sMonDecimalSep"=","
"sMonThousandSep"=" "
"sDate"="."
"sShortDate"="dd.MM.yyyy"
"sTime"=":"
"sTimeFormat"="HH:mm:ss"
"iTime"="1"
VALUES
            ;;
        point)
            cat <<'VALUES'
"sDecimal"="."
"sThousand"=","
"sMonDecimalSep"="."
"sMonThousandSep"=","
"sDate"="/"
"sShortDate"="M/d/yyyy"
"sTime"=":"
"sTimeFormat"="h:mm:ss tt"
"iTime"="0"
VALUES
            ;;
        *) fail "wine_regional: comma or point, not \"$1\"" ;;
    esac
}

# Wine writes a locale's own formats into the registry when a process first runs under another
# locale; the wanted ones are therefore set after that has happened.
wine_regional() {
    local codepage=$1 separator=$2 file=$WINE_PREFIX/drive_c/tolvane-regional.reg
    [[ $codepage == 1251 || $codepage == 1252 ]] || fail "wine_regional: 1251 or 1252, not \"$codepage\""
    [ "$(wine_state codepage) $(wine_state separator)" = "$codepage $separator" ] && return 0
    wine_stop
    wine_locale_make
    rm -f "$WINE_PREFIX/tolvane-separator"
    printf '%s\n' "$codepage" >"$WINE_PREFIX/tolvane-codepage"
    {
        printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Control Panel\\International]\n'
        regional_values "$separator"
    } >"$file"
    wine_run cmd /c ver
    wine_import "$file"
    printf '%s\n' "$separator" >"$WINE_PREFIX/tolvane-separator"
}

wine_com_port() {
    wine_run reg add 'HKLM\Software\Wine\Ports' /v "$1" /t REG_SZ /d "$2" /f
    wine_stop
}

display_pid() {
    cat "$DISPLAY_FOLDER/pid" 2>/dev/null || true
}

# -displayfd would look for a free number in its own network namespace only, and takes no lock: a display
# inside a namespace would then remove the socket file of one outside. Hence a fixed number, with X's lock.
display_start() {
    local number
    if process_is "$(display_pid)" "Xvfb -fbdir $DISPLAY_FOLDER" && [ -e "$DISPLAY_FOLDER/number" ]; then
        return 0
    fi
    display_stop
    # Wine's desktop process belongs to the display under which it started.
    wine_stop
    mkdir -p "$DISPLAY_FOLDER"
    for number in {90..189}; do
        if display_start_at "$number"; then
            printf '%s\n' "$number" >"$DISPLAY_FOLDER/number"
            return 0
        fi
    done
    cat "$DISPLAY_FOLDER/xvfb.log"
    display_stop
    fail "Xvfb did not start"
}

# display_start_at <number>: fails when another display has the number, also in another namespace. Without
# -noreset a server would start anew when its last client goes, and make its sockets again.
display_start_at() {
    local pid
    setsid Xvfb -fbdir "$DISPLAY_FOLDER" -screen 0 1280x900x24 -nolisten tcp -noreset ":$1" \
        >"$DISPLAY_FOLDER/xvfb.log" 2>&1 </dev/null &
    pid=$!
    printf '%s\n' "$pid" >"$DISPLAY_FOLDER/pid"
    if ! wait_until 60 display_is_decided "$1" "$pid"; then
        end_process "$pid" "Xvfb -fbdir $DISPLAY_FOLDER"
        return 1
    fi
    ! process_gone "$pid"
}

# Whether the process serves the display, or has ended because it cannot.
display_is_decided() {
    process_gone "$2" || {
        [ "$(tr -d ' ' <"/tmp/.X$1-lock")" = "$2" ] &&
            grep -q " 00010000 .* @\?/tmp/\.X11-unix/X$1\$" /proc/net/unix
    } 2>/dev/null
}

display_stop() {
    end_process "$(display_pid)" "Xvfb -fbdir $DISPLAY_FOLDER"
    rm -rf "$DISPLAY_FOLDER"
}

screenshot() {
    mkdir -p "$(dirname "$1")"
    wine_command import -window root "$1"
}

# wine_path <path>: the Windows name of a file of this machine.
wine_path() {
    printf 'Z:%s\n' "$(realpath -m "$1" | tr / '\\')"
}
