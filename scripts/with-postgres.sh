#!/usr/bin/env bash
# Runs a command next to a throwaway PostgreSQL server: initialises a cluster
# in a temporary directory, starts it on 127.0.0.1 at a free port, runs the
# command with VELD_TEST_PG_PORT, VELD_TEST_PG_USER, VELD_TEST_PG_PASSWORD and
# VELD_TEST_PG_DATABASE set, then stops the server and deletes the directory.
# TCP logins need the password (scram-sha-256), so a wrong one is refused.
#
# Usage: with-postgres.sh COMMAND [ARGS...]
set -euo pipefail

pgbin=""
for dir in /usr/lib/postgresql/*/bin; do
  [[ -x "$dir/initdb" ]] && pgbin=$dir
done
if [[ -z "$pgbin" ]]; then
  echo "with-postgres.sh: no PostgreSQL server found (install the postgresql package)" >&2
  exit 1
fi

tmp=$(mktemp -d "${TMPDIR:-/tmp}/veld-pg.XXXXXX")
# initdb refuses to run as root: run the server as the postgres user then.
as_server=()
if [[ $(id -u) == 0 ]]; then
  chown postgres:postgres "$tmp"
  as_server=(runuser -u postgres --)
fi
server() { (cd "$tmp" && "${as_server[@]}" "$@"); }

cleanup() {
  server "$pgbin/pg_ctl" -D "$tmp/data" -m fast -w stop >/dev/null 2>&1 || true
  rm -rf "$tmp"
}
trap cleanup EXIT

password="veld-$RANDOM-$RANDOM"
printf '%s\n' "$password" >"$tmp/pwfile"
[[ $(id -u) == 0 ]] && chown postgres:postgres "$tmp/pwfile"

port=54329
while (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; do port=$((port + 1)); done

server "$pgbin/initdb" -D "$tmp/data" -U postgres --pwfile="$tmp/pwfile" \
  --auth-local=trust --auth-host=scram-sha-256 -E UTF8 --locale=C.UTF-8 -N \
  >"$tmp/initdb.log" 2>&1 || { cat "$tmp/initdb.log" >&2; exit 1; }
server "$pgbin/pg_ctl" -D "$tmp/data" -l "$tmp/server.log" -w -t 60 \
  -o "-c listen_addresses=127.0.0.1 -p $port -k $tmp -c fsync=off" start >/dev/null ||
  { cat "$tmp/server.log" >&2; exit 1; }
server "$pgbin/createdb" -h "$tmp" -p "$port" -U postgres veld_test

export VELD_TEST_PG_PORT=$port VELD_TEST_PG_USER=postgres VELD_TEST_PG_PASSWORD=$password \
  VELD_TEST_PG_DATABASE=veld_test
set +e
"$@"
status=$?
set -e
exit "$status"
