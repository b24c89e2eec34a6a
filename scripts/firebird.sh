# shellcheck shell=bash disable=SC1091
# Sourced: a private Firebird 3 server under build/firebird (a lane has its own) that runs as the calling user. The
# system's own server, its folders and its passwords are never touched.
#
#   firebird_start           starts it, or leaves the one that runs; returns when it accepts users
#   firebird_stop            ends it
#   firebird_port            prints its port
#   firebird_database <file.fdb> <script.sql>...
#                            makes the database anew (code page 1251, dialect 3) from UTF-8 scripts
#   firebird_connection <file.fdb>
#                            prints the name to connect by: 127.0.0.1/PORT:/path/file.fdb
#
# The user is SYSDBA, the password masterkey. The server listens on the loopback address alone.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

FIREBIRD_FOLDER=$BUILD/firebird$LANE
FIREBIRD_SYSTEM=/usr/lib/x86_64-linux-gnu/firebird/3.0
FIREBIRD_USER=SYSDBA
FIREBIRD_PASSWORD=masterkey

firebird_port() {
    cat "$FIREBIRD_FOLDER/port" 2>/dev/null || true
}

firebird_connection() {
    printf '127.0.0.1/%s:%s\n' "$(firebird_port)" "$(realpath -m "$1")"
}

# firebird_isql <argument>...: isql-fb with the private folder's settings; stops at an error.
firebird_isql() {
    FIREBIRD=$FIREBIRD_FOLDER FIREBIRD_LOCK=$FIREBIRD_FOLDER/lock FIREBIRD_TMP=$FIREBIRD_FOLDER/lock \
        isql-fb -bail -quiet "$@"
}

# Stands in for an installation: links to the system's programs, its own settings.
# The character sets are copied: the server does not find them through a link.
firebird_make_folder() {
    local entry
    mkdir -p "$FIREBIRD_FOLDER/lock" "$FIREBIRD_FOLDER/data"
    for entry in "$FIREBIRD_SYSTEM"/*; do
        case ${entry##*/} in
            firebird.conf | databases.conf) ;;
            intl) [ -d "$FIREBIRD_FOLDER/intl" ] || cp -rL "$entry" "$FIREBIRD_FOLDER/intl" ;;
            *) ln -sfn "$entry" "$FIREBIRD_FOLDER/${entry##*/}" ;;
        esac
    done
    printf 'security.db = %s {\n  RemoteAccess = false\n}\n' "$FIREBIRD_FOLDER/security3.fdb" \
        >"$FIREBIRD_FOLDER/databases.conf"
}

firebird_write_settings() {
    cat >"$FIREBIRD_FOLDER/firebird.conf" <<SETTINGS
RemoteServicePort = $1
RemoteBindAddress = 127.0.0.1
IpcName = tolvane_$1
DatabaseAccess = Full
SecurityDatabase = $FIREBIRD_FOLDER/security3.fdb
AuthServer = Srp
AuthClient = Srp
UserManager = Srp
WireCrypt = Enabled
ServerMode = Super
UdfAccess = None
SETTINGS
}

# Made under another name and then renamed, so that a killed run leaves no half of it.
firebird_make_security() {
    local file=$FIREBIRD_FOLDER/security3.fdb
    [ -e "$file" ] && return 0
    rm -f "$file.new"
    firebird_isql -user "$FIREBIRD_USER" <<<"create database '$file.new';"
    firebird_isql -user "$FIREBIRD_USER" -i /usr/share/firebird/3.0/security.sql "$file.new"
    mv "$file.new" "$file"
    firebird_isql -user "$FIREBIRD_USER" "$file" \
        <<<"create or alter user $FIREBIRD_USER password '$FIREBIRD_PASSWORD' using plugin Srp; commit;"
}

firebird_pid() {
    cat "$FIREBIRD_FOLDER/pid" 2>/dev/null || true
}

# What it is known by: its command line, which names its folder.
firebird_words() {
    printf '/usr/sbin/firebird -e %s \n' "$FIREBIRD_FOLDER"
}

firebird_runs() {
    process_is "$(firebird_pid)" "$(firebird_words)"
}

# Whether the server lets a user in; the security database is reached by the server's alias.
firebird_accepts() {
    firebird_runs || return 0
    firebird_isql -user "$FIREBIRD_USER" -password "$FIREBIRD_PASSWORD" \
        "127.0.0.1/$(firebird_port):$FIREBIRD_FOLDER/probe.fdb" <<<"select 1 from rdb\$database;" \
        >/dev/null 2>&1
}

port_answers() {
    (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

firebird_free_port() {
    local port
    while true; do
        port=$((20000 + RANDOM % 10000))
        port_answers "$port" || break
    done
    printf '%s\n' "$port"
}

# With the port as an argument the server would listen on every address of the machine, whatever its settings say.
firebird_try_port() {
    local port=$1
    firebird_write_settings "$port"
    printf '%s\n' "$port" >"$FIREBIRD_FOLDER/port"
    FIREBIRD=$FIREBIRD_FOLDER FIREBIRD_LOCK=$FIREBIRD_FOLDER/lock FIREBIRD_TMP=$FIREBIRD_FOLDER/lock \
        setsid /usr/sbin/firebird -e "$FIREBIRD_FOLDER" >"$FIREBIRD_FOLDER/server.log" 2>&1 </dev/null &
    printf '%s\n' "$!" >"$FIREBIRD_FOLDER/pid"
    wait_until 30 firebird_accepts && firebird_runs
}

firebird_start() {
    if firebird_runs && firebird_accepts; then
        return 0
    fi
    firebird_stop
    firebird_make_folder
    rm -rf "${FIREBIRD_FOLDER:?}/lock"
    mkdir -p "$FIREBIRD_FOLDER/lock"
    firebird_write_settings 0
    firebird_make_security
    if ! [ -e "$FIREBIRD_FOLDER/probe.fdb" ]; then
        firebird_isql -user "$FIREBIRD_USER" <<<"create database '$FIREBIRD_FOLDER/probe.fdb';"
    fi
    for _ in 1 2 3; do
        firebird_try_port "$(firebird_free_port)" && return 0
        firebird_stop
    done
    cat "$FIREBIRD_FOLDER/server.log" "$FIREBIRD_FOLDER/firebird.log" 2>/dev/null || true
    fail "the private Firebird server did not start"
}

firebird_stop() {
    end_process "$(firebird_pid)" "$(firebird_words)"
    rm -f "$FIREBIRD_FOLDER/pid"
}

firebird_database() {
    local file script connection
    file=$(realpath -m "$1")
    shift
    connection=$(firebird_connection "$file")
    mkdir -p "$(dirname "$file")"
    rm -f "$file"
    firebird_isql -user "$FIREBIRD_USER" -password "$FIREBIRD_PASSWORD" -sqldialect 3 <<SQL
create database '$connection' page_size 8192 default character set win1251;
SQL
    for script in "$@"; do
        firebird_isql -user "$FIREBIRD_USER" -password "$FIREBIRD_PASSWORD" -sqldialect 3 \
            -charset UTF8 -i "$script" "$connection"
    done
}
