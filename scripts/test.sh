#!/usr/bin/env bash
# The whole test suite, from a fresh Debian 12 machine or an already prepared
# one:
#   set-up (scripts/setup.sh), the reference PostgreSQL (scripts/pg.sh start),
#   the formatting and type-library checks, then for each preset (dev, asan):
#   configure, build, and ctest: the offline tests in parallel, then the
#   database tests one at a time on a fresh database.
#
#   scripts/test.sh [--fast] [-j N]
#     --fast   the dev preset only (no ASan/UBSan build)
#     -j N     build and test jobs (default: the number of cores)
#
# Settings: QDR_TEST_DB (database name, default qdr_test), and those of
# scripts/pg.sh (QDR_PG_PORT, QDR_PG_DIR).
#
# Exits non-zero when any step fails; a failing check or test does not stop
# the steps after it, a failing build does. The last lines summarise.
set -uo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"

presets=(dev asan)
jobs=$(nproc 2>/dev/null || echo 2)
while [ $# -gt 0 ]; do
  case "$1" in
    --fast) presets=(dev) ;;
    -j) shift; jobs=${1:?-j needs a number} ;;
    -j*) jobs=${1#-j} ;;
    -h | --help) sed -n '2,17p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) echo "test.sh: unknown option $1 (see --help)" >&2; exit 2 ;;
  esac
  shift
done
test_db=${QDR_TEST_DB:-qdr_test}

logs=$repo/build/test-logs
mkdir -p "$logs"
summary=()
failed=0
total_passed=0 total_failed=0 total_skipped=0
started=$SECONDS

step_started=$SECONDS
title() {
  printf '\n==== %s\n' "$*"
  step_started=$SECONDS
}
record() {  # record STEP RESULT
  summary+=("$(printf '%-18s %5s s  %s' "$1" "$((SECONDS - step_started))" "$2")")
  [ "$2" = ok ] || failed=1
}

finish() {
  title "summary ($((SECONDS - started)) s)"
  printf '%s\n' "${summary[@]}"
  echo "tests: $total_passed passed, $total_failed failed, $total_skipped skipped"
  exit "$failed"
}

# Runs ctest with the given arguments, shows its output, and adds its counts
# to the totals. Skipped tests count as skipped, not passed.
run_ctest() {  # run_ctest NAME ctest-args...
  local name=$1 log=$logs/$1.log
  shift
  ctest "$@" 2>&1 | tee "$log"
  local rc=${PIPESTATUS[0]}
  local line total bad skipped
  line=$(grep -E '^[0-9]+% tests passed, [0-9]+ tests? failed out of [0-9]+' "$log" | tail -n 1)
  if [ -z "$line" ]; then
    record "$name" "FAILED (no test ran, ctest exit $rc)"
    return
  fi
  total=$(sed -E 's/.* out of ([0-9]+).*/\1/' <<<"$line")
  bad=$(sed -E 's/.*, ([0-9]+) tests? failed.*/\1/' <<<"$line")
  skipped=$(grep -cE '^\s*[0-9]+ - .*\(Skipped\)$' "$log" || true)
  total_passed=$((total_passed + total - bad - skipped))
  total_failed=$((total_failed + bad))
  total_skipped=$((total_skipped + skipped))
  if [ "$rc" = 0 ] && [ "$bad" = 0 ]; then
    record "$name" ok
    summary[-1]+="  ($((total - skipped)) passed, $skipped skipped)"
  else
    record "$name" "FAILED ($line)"
  fi
}

title "set-up"
if ! bash scripts/setup.sh; then
  record set-up FAILED
  finish
fi
record set-up ok

title "reference database"
if ! scripts/pg.sh start; then
  record "reference database" FAILED
  finish
fi
eval "$(scripts/pg.sh env)"
export ODBCSYSINI QDR_PG_PORT QDR_PG_DIR
record "reference database" ok
echo "PostgreSQL on port $QDR_PG_PORT, ODBCSYSINI=$ODBCSYSINI"

title "formatting"
if bash scripts/check_format.sh; then record formatting ok; else record formatting FAILED; fi

title "type library"
if bash scripts/check_idl.sh; then record "type library" ok; else record "type library" FAILED; fi

for preset in "${presets[@]}"; do
  title "$preset: configure and build"
  if ! cmake --preset "$preset" >"$logs/$preset-configure.log" 2>&1; then
    cat "$logs/$preset-configure.log"
    record "$preset build" "FAILED (configure)"
    finish
  fi
  if ! cmake --build --preset "$preset" -j "$jobs"; then
    record "$preset build" FAILED
    finish
  fi
  record "$preset build" ok

  title "$preset: offline tests"
  run_ctest "$preset offline" --preset "$preset" -LE db -j "$jobs" --timeout 300 --no-tests=error

  title "$preset: database tests"
  if ! QDR_TEST_CONNECTION=$(scripts/pg.sh createdb "$test_db"); then
    record "$preset database" "FAILED (scripts/pg.sh createdb $test_db)"
    continue
  fi
  export QDR_TEST_CONNECTION
  # One at a time: the tests share one database.
  run_ctest "$preset database" --preset "$preset" -L db --timeout 300 --no-tests=error
done

finish
