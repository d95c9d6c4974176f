#!/usr/bin/env bash
# The component at work on the reference database, as a calling application
# would use it: each step calls one public method through the qdr command
# with a request from scripts/demo/ and shows what came back.
#
#   scripts/demo.sh [--release]
#     --release  use the release build (build/release) instead of the dev
#                build that scripts/test.sh also makes
#
# Sets up everything it needs (scripts/setup.sh, the reference PostgreSQL),
# builds the qdr command, and rebuilds the database qdr_demo from scratch, so
# every run starts from the same data. Settings: QDR_DEMO_LOCALE (the locale
# the component runs in, default pt_BR.UTF-8), and those of scripts/pg.sh.
#
# Exits non-zero when a step cannot run (set-up, build, database, a request
# the qdr command rejects) or a step that expects a status gets another one.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"
requests=$repo/scripts/demo
preset=dev
case "${1:-}" in
  "") ;;
  --release) preset=release ;;
  -h | --help) sed -n '2,16p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
  *) echo "demo.sh: unknown option $1 (see --help)" >&2; exit 2 ;;
esac

step_number=0
recap=()
title() {
  step_number=$((step_number + 1))
  printf '\n==== Step %d: %s\n' "$step_number" "$*"
}

# --- Steps ------------------------------------------------------------------

prepare_machine() {
  title "Prepare the machine"
  bash scripts/setup.sh
  scripts/pg.sh start
  eval "$(scripts/pg.sh env)"
  export ODBCSYSINI
  echo "PostgreSQL on port $QDR_PG_PORT"
}

build_qdr_command() {
  title "Build the qdr command ($preset)"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" --target qdr_tool -j "$(nproc 2>/dev/null || echo 2)"
  qdr=$repo/build/$preset/tools/qdr
  [ -x "$qdr" ] || { echo "demo.sh: $qdr was not built" >&2; exit 1; }
}

create_database() {
  title "Create the database qdr_demo from db/postgres"
  connection=$(scripts/pg.sh createdb qdr_demo)
  echo "invntConecta_db = $connection"
}

ports_of_the_branch() {
  title "Ports of the Rio de Janeiro branch, for operator 2"
  call gConsulta_Porto_Ponto 01_ports.json 0
}

incident_types_of_the_order() {
  title "Incident types that may be recorded for order-type record 101"
  call gMonta_Lista_Tab_Tipo_Incidente 02_incident_types.json 0
}

record_an_incident() {
  title "Record a delay at the terminal on order-type record 101"
  call gGrava_Incidente 03_record_incidents.json 0
}

incident_types_after_recording() {
  title "The same list again: the delay is now ticked, with its justification"
  call gMonta_Lista_Tab_Tipo_Incidente 02_incident_types.json 0
}

load_an_order() {
  title "Load order-type record 101 for closing"
  call gConsulta_Ordem_Servico_Tipo 04_load_order.json 0
}

close_an_order() {
  title "Close order-type record 103 (a removal between terminals)"
  call gGrava_Fechamento 05_close_order.json
}

# --- Calling a method -------------------------------------------------------

# call METHOD REQUEST [EXPECTED_STATUS]
# Sends scripts/demo/REQUEST, with invntConecta_db added, to `qdr call
# METHOD`; shows the status, the message and every argument that came back
# different from what was sent (arguments left Empty are only counted).
call() {
  local method=$1 file=$requests/$2 expected=${3:-}
  local request answer status
  request=$(jq --arg connection "$connection" '. + {invntConecta_db: $connection}' "$file")
  echo "qdr call $method < scripts/demo/$2"
  if ! answer=$(LC_ALL=${QDR_DEMO_LOCALE:-pt_BR.UTF-8} "$qdr" call "$method" <<<"$request"); then
    echo "demo.sh: qdr rejected the request in scripts/demo/$2" >&2
    exit 1
  fi
  status=$(jq -r '.result' <<<"$answer")
  jq -r --argjson sent "$request" '
    def show: if type == "string" then . else tojson end;
    "status  \(.result)",
    (if (.args.outvntMsg_Ret | type) == "string" and .args.outvntMsg_Ret != ""
     then "message \(.args.outvntMsg_Ret)" else empty end),
    (.args | to_entries
       | map(select(.key != "outvntMsg_Ret" and .key != "invntConecta_db"))
       | (map(select(.value != {"$type": "Empty"} and .value != $sent[.key]))[]
            | "  \(.key) = \(.value | show)"),
         (map(select(.value == {"$type": "Empty"})) | length
            | if . > 0 then "  (\(.) more arguments left Empty)" else empty end))
  ' <<<"$answer"
  recap+=("$(printf '%-34s status %s' "$method" "$status")")
  if [ -n "$expected" ] && [ "$status" != "$expected" ]; then
    echo "demo.sh: $method answered $status, expected $expected" >&2
    exit 1
  fi
}

# --- The demo ---------------------------------------------------------------

prepare_machine
build_qdr_command
create_database
ports_of_the_branch
incident_types_of_the_order
record_an_incident
incident_types_after_recording
load_an_order
close_an_order

printf '\n==== Done\n'
printf '%s\n' "${recap[@]}"
