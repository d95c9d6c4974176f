#!/usr/bin/env bash
# Checks the automation identity in component/T318QDR62.idl:
#  1. it compiles with widl into a type library and a header (in a temporary
#     directory), importing the standard OLE automation library stdole2.tlb;
#     any diagnostic fails the check;
#  2. its library, interface and class identifiers are the published ones;
#  3. its methods, dispatch ids and parameter names, in order, are exactly
#     those of the method table in component/dispatch.cpp, every parameter a
#     by-reference [in, out] VARIANT* and the last an [out, retval] VARIANT*.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
idl=$repo/component/T318QDR62.idl
table=$repo/component/dispatch.cpp

fail() {
  echo "check_idl: $*" >&2
  exit 1
}

first_existing() {
  local f
  for f in "$@"; do
    [ -e "$f" ] && { echo "$f"; return; }
  done
}

widl=$(command -v x86_64-w64-mingw32-widl || true)
[ -n "$widl" ] || fail "x86_64-w64-mingw32-widl not found (package mingw-w64-tools; run scripts/setup.sh)"
stdole=$(first_existing /usr/lib/x86_64-linux-gnu/wine/x86_64-windows/stdole2.tlb \
  /usr/lib/*/wine/*-windows/stdole2.tlb)
[ -n "$stdole" ] || fail "stdole2.tlb not found (package libwine; run scripts/setup.sh)"
oaidl=$(first_existing /usr/include/wine/wine/windows/oaidl.idl /usr/include/wine/windows/oaidl.idl)
[ -n "$oaidl" ] || fail "oaidl.idl not found (package libwine-dev; run scripts/setup.sh)"

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

# 1. Compile. Wine's own guiddef.h makes widl's preprocessor warn about an
# #undef of a macro it never defined; that one line is not ours.
if ! "$widl" -W -t -T "$tmp/T318QDR62.tlb" -h -H "$tmp/T318QDR62.h" \
  -I "$(dirname "$oaidl")" -L "$(dirname "$stdole")" "$idl" >"$tmp/widl.log" 2>&1; then
  cat "$tmp/widl.log" >&2
  fail "widl failed on ${idl#"$repo"/}"
fi
if grep -v 'guiddef.h:[0-9:]* warning: DEFINE_GUID was not defined' "$tmp/widl.log" >"$tmp/diag.log"; then
  cat "$tmp/diag.log" >&2
  fail "widl reported diagnostics on ${idl#"$repo"/}"
fi
[ "$(head -c 4 "$tmp/T318QDR62.tlb")" = MSFT ] || fail "widl wrote no type library"
grep -q stdole2.tlb "$tmp/T318QDR62.tlb" || fail "the type library does not import stdole2.tlb"

# 2. Identifiers, as widl wrote them into the header.
expect_guid() {
  grep -qF "DEFINE_GUID($1, $2)" "$tmp/T318QDR62.h" || fail "$1 is not {$3}"
}
expect_guid LIBID_T318QDR62 '0x3a27aae9, 0x522a, 0x4006, 0x8e,0x51, 0x9e,0xaa,0xa5,0x4c,0x68,0x91' \
  3A27AAE9-522A-4006-8E51-9EAAA54C6891
expect_guid IID__QDR '0xa83cea67, 0xd53a, 0x4876, 0x93,0x65, 0xc6,0x5a,0x0c,0x1e,0xec,0x96' \
  A83CEA67-D53A-4876-9365-C65A0C1EEC96
expect_guid CLSID_QDR '0x693b050f, 0x3a76, 0x4332, 0x86,0x09, 0xec,0xb9,0xda,0x41,0x5a,0xd5' \
  693B050F-3A76-4332-8609-ECB9DA415AD5

# 3. Methods: one line each, "name dispid parameter...", from both sides.
perl -0777 -ne '
  s{//[^\n]*}{}g; s{/\*.*?\*/}{}gs;
  /interface\s+_QDR\s*:\s*IDispatch\s*\{(.*?)\}\s*;/s or die "check_idl: no interface _QDR : IDispatch\n";
  my $body = $1;
  while ($body =~ /\[\s*id\((0x[0-9A-Fa-f]+)\)\s*\]\s*HRESULT\s+(\w+)\s*\((.*?)\)\s*;/gs) {
    my ($id, $name, $params) = (lc $1, $2, $3);
    my @p = split /,(?![^\[]*\])/, $params;
    my $last = pop @p;
    $last =~ /^\s*\[\s*out\s*,\s*retval\s*\]\s*VARIANT\s*\*\s*\w+\s*$/
      or die "check_idl: $name: the last parameter is not [out, retval] VARIANT*\n";
    my @names;
    for (@p) {
      /^\s*\[\s*in\s*,\s*out\s*\]\s*VARIANT\s*\*\s*(\w+)\s*$/
        or die "check_idl: $name: not an [in, out] VARIANT* parameter: $_\n";
      push @names, $1;
    }
    print join(" ", $name, $id, @names), "\n";
  }' "$idl" >"$tmp/idl.txt"

perl -0777 -ne '
  /\bmethods\(\)\s*\{(.*?)\bfind_method\b/s or die "check_idl: no method table in dispatch.cpp\n";
  my $rows = $1;
  while ($rows =~ /\{\s*"(\w+)"\s*,\s*(0x[0-9A-Fa-f]+)\s*,\s*\{(.*?)\}\s*\}/gs) {
    my ($name, $id, $params) = ($1, lc $2, $3);
    print join(" ", $name, $id, $params =~ /"(\w+)"/g), "\n";
  }' "$table" >"$tmp/table.txt"

[ "$(wc -l <"$tmp/table.txt")" -eq 5 ] || fail "expected 5 methods in ${table#"$repo"/}, found $(wc -l <"$tmp/table.txt")"
split_lines() { tr ' ' '\n' <"$1"; }
if ! diff -u --label "${table#"$repo"/}" --label "${idl#"$repo"/}" \
  <(split_lines "$tmp/table.txt") <(split_lines "$tmp/idl.txt") >"$tmp/diff.txt"; then
  cat "$tmp/diff.txt" >&2
  fail "the IDL and the method table of dispatch.cpp disagree (one name or dispatch id a line above)"
fi

methods=$(wc -l <"$tmp/idl.txt")
params=$(awk '{ n += NF - 2 } END { print n }' "$tmp/idl.txt")
echo "check_idl: ok ($methods methods, $params parameters, type library $(stat -c %s "$tmp/T318QDR62.tlb") bytes)"
