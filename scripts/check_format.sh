#!/usr/bin/env bash
# Checks that every C++ source of ours (.cpp and .h under include/, infra/,
# closing/, component/, tools/, tests/ and bench/) is formatted as the repo's
# .clang-format says. With --fix, formats them in place instead.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"

fix=false
case "${1:-}" in
  "") ;;
  --fix) fix=true ;;
  *) echo "usage: scripts/check_format.sh [--fix]" >&2; exit 2 ;;
esac

command -v clang-format >/dev/null || { echo "check_format: clang-format not found (run scripts/setup.sh)" >&2; exit 1; }

mapfile -t files < <(find include infra closing component tools tests bench \
  -type f \( -name '*.cpp' -o -name '*.h' \) 2>/dev/null | LC_ALL=C sort)
[ "${#files[@]}" -gt 0 ] || { echo "check_format: no sources found" >&2; exit 1; }

if $fix; then
  clang-format --style=file -i "${files[@]}"
  echo "check_format: formatted ${#files[@]} files"
  exit 0
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if clang-format --style=file --dry-run --Werror "${files[@]}" 2>"$log"; then
  echo "check_format: ok (${#files[@]} files)"
  exit 0
fi
# The first few differences, then every file that differs.
head -n 30 "$log" >&2
mapfile -t bad < <(grep -oE '^[^: ]+\.(cpp|h):[0-9]+:[0-9]+: error' "$log" | cut -d: -f1 | LC_ALL=C sort -u)
echo "check_format: ${#bad[@]} of ${#files[@]} files are not formatted:" >&2
printf '  %s\n' "${bad[@]}" >&2
echo "check_format: scripts/check_format.sh --fix formats them" >&2
exit 1
