#!/usr/bin/env bash
# The reference PostgreSQL for tests and the demo: a throwaway cluster owned by
# a non-root user, listening on 127.0.0.1 and a socket at a private port, with
# its own ODBC configuration (ODBCSYSINI) so nothing on the machine is touched.
#
#   scripts/pg.sh start            start the cluster (creates it the first time)
#   scripts/pg.sh stop             stop it
#   scripts/pg.sh env              shell exports: ODBCSYSINI, QDR_PG_PORT, QDR_PG_DIR
#   scripts/pg.sh createdb NAME    build database NAME afresh from db/postgres;
#                                  prints its ODBC connection string
#   scripts/pg.sh connstr NAME     print the ODBC connection string of NAME
#   scripts/pg.sh psql NAME [...]  psql on NAME
#
# Settings: QDR_PG_PORT (default 54329), QDR_PG_DIR (default <repo>/.pg, or
# /var/tmp/qdr-pg-<hash of the repo path> when run as root on a checkout that
# the "postgres" user cannot reach, e.g. under /root).
# Every command may be run any number of times.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
port=${QDR_PG_PORT:-54329}
bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
[ -n "$bindir" ] || { echo "pg.sh: no PostgreSQL server installed (run scripts/setup.sh)" >&2; exit 1; }

# The cluster belongs to a non-root user: ourselves, or "postgres" when root.
if [ "$(id -u)" = 0 ]; then owner=postgres; else owner=$(id -un); fi
as_owner() {
  # From /, which the owner can always enter, whatever our own directory is.
  if [ "$(id -u)" = 0 ]; then (cd / && runuser -u "$owner" -- "$@"); else "$@"; fi
}

if [ -n "${QDR_PG_DIR:-}" ]; then
  base=$QDR_PG_DIR
elif [ "$(id -u)" != 0 ] || runuser -u "$owner" -- test -x "$repo" 2>/dev/null; then
  base=$repo/.pg
else
  base=/var/tmp/qdr-pg-$(printf '%s' "$repo" | md5sum | cut -c1-12)
fi
data=$base/data
sock=$base/run
odbc=$base/odbc

driver_path() {
  local f
  for f in /usr/lib/x86_64-linux-gnu/odbc/psqlodbcw.so /usr/lib/*/odbc/psqlodbcw.so; do
    [ -e "$f" ] && { echo "$f"; return; }
  done
  echo psqlodbcw.so
}

write_odbc_config() {
  mkdir -p "$odbc"
  # Pooling is on so that a routine's connect-per-statement is cheap; the
  # component resets every connection before handing it back. CommLog stays
  # off: the driver would otherwise write a log file per process.
  cat >"$odbc/odbcinst.ini" <<INI
[ODBC]
Pooling=Yes

[PostgreSQL Unicode]
Description=PostgreSQL ODBC driver (Unicode)
Driver=$(driver_path)
Debug=0
CommLog=0
CPTimeout=120
UsageCount=1
INI
  : >"$odbc/odbc.ini"
  # Readable by everyone (the tests may run as another user); the data
  # directory keeps the owner-only mode the server insists on.
  chmod a+rx "$base" "$odbc"
  chmod a+r "$odbc"/*.ini
}

start() {
  mkdir -p "$base" "$sock"
  if [ "$(id -u)" = 0 ]; then chown "$owner" "$base" "$sock"; fi
  if [ ! -s "$data/PG_VERSION" ]; then
    as_owner "$bindir/initdb" -D "$data" -U "$owner" --auth=trust -E UTF8 --locale=C.UTF-8 >/dev/null
  fi
  if ! as_owner "$bindir/pg_ctl" -D "$data" status >/dev/null 2>&1; then
    as_owner chmod 700 "$data"  # an older version of this script opened it up
    as_owner "$bindir/pg_ctl" -D "$data" -l "$base/server.log" -w -t 60 \
      -o "-p $port -k $sock -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off -c full_page_writes=off" \
      start >/dev/null
  fi
  as_owner "$bindir/psql" -h "$sock" -p "$port" -d postgres -qtAX -v ON_ERROR_STOP=1 <<'SQL' >/dev/null
DO $$ BEGIN
  IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = 'qdr') THEN
    CREATE ROLE qdr LOGIN PASSWORD 'qdr' CREATEDB;
  END IF;
END $$;
SQL
  write_odbc_config
}

stop() {
  if [ -s "$data/PG_VERSION" ]; then
    as_owner "$bindir/pg_ctl" -D "$data" -m fast -w stop >/dev/null 2>&1 || true
  fi
}

connstr() {
  echo "Driver={PostgreSQL Unicode};Servername=127.0.0.1;Port=$port;Database=$1;UID=qdr;PWD=qdr;"
}

psql_on() {
  local db=$1; shift
  PGOPTIONS="-c client_min_messages=warning" "$bindir/psql" -h "$sock" -p "$port" -U qdr -d "$db" -v ON_ERROR_STOP=1 "$@"
}

createdb() {
  local name=$1
  [[ $name =~ ^[a-z_][a-z0-9_]*$ ]] || { echo "pg.sh: bad database name '$name'" >&2; exit 2; }
  psql_on postgres -qtAX -c "DROP DATABASE IF EXISTS $name WITH (FORCE)" >/dev/null
  psql_on postgres -qtAX -c "CREATE DATABASE $name OWNER qdr ENCODING 'UTF8' TEMPLATE template0" >/dev/null
  # Files run in name order (byte order, whatever the locale), each in one
  # transaction; the first error stops the build and names its file.
  local dir f
  for dir in schema procedures seed; do
    for f in $(ls "$repo/db/postgres/$dir"/*.sql 2>/dev/null | LC_ALL=C sort); do
      if ! psql_on "$name" -qtAX --single-transaction -f "$f" >/dev/null; then
        echo "pg.sh: createdb $name: failed in ${f#"$repo"/}" >&2
        exit 1
      fi
    done
  done
  connstr "$name"
}

case "${1:-}" in
  start) start ;;
  stop) stop ;;
  env)
    echo "export ODBCSYSINI='$odbc' QDR_PG_PORT='$port' QDR_PG_DIR='$base'"
    ;;
  createdb) [ $# -eq 2 ] || { echo "usage: pg.sh createdb NAME" >&2; exit 2; }; createdb "$2" ;;
  connstr) [ $# -eq 2 ] || { echo "usage: pg.sh connstr NAME" >&2; exit 2; }; connstr "$2" ;;
  psql) [ $# -ge 2 ] || { echo "usage: pg.sh psql NAME [args]" >&2; exit 2; }; shift; psql_on "$@" ;;
  *) sed -n '2,15p' "$0" | sed 's/^# \{0,1\}//'; exit 2 ;;
esac
