#!/usr/bin/env bash
# Installs what building, testing and running the component needs, all from
# Debian's packages, and generates the locales the tests switch to. Run as
# root (or through sudo). Harmless when run again: when everything is already
# there it only checks and returns.
set -euo pipefail

packages=(
  build-essential g++ cmake                 # compilers and build
  clang-format                              # formatting check
  libgtest-dev libgmock-dev                 # GoogleTest / GoogleMock
  libbenchmark-dev                          # Google Benchmark
  unixodbc unixodbc-dev odbc-postgresql     # ODBC driver manager and the PostgreSQL driver
  postgresql                                # the reference database
  nlohmann-json3-dev                        # JSON for the qdr command and the replay provider
  locales                                   # pt_BR.UTF-8 and en_US.UTF-8
  jq                                        # the demo's requests and answers
  mingw-w64-tools libwine libwine-dev       # widl, stdole2.tlb and oaidl.idl for the IDL check
)
locales_wanted=(pt_BR.UTF-8 en_US.UTF-8)

missing_packages() {
  local p status
  for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$p" 2>/dev/null || true)
    [ "$status" = installed ] || echo "$p"
  done
}

# `locale -a` spells them pt_BR.utf8; compare without case or dashes.
missing_locales() {
  local have l
  have=$(locale -a 2>/dev/null | tr 'A-Z' 'a-z' | tr -d '-')
  for l in "${locales_wanted[@]}"; do
    grep -qx "$(echo "$l" | tr 'A-Z' 'a-z' | tr -d '-')" <<<"$have" || echo "$l"
  done
}

need_packages=$(missing_packages)
need_locales=$(missing_locales)
if [ -z "$need_packages" ] && [ -z "$need_locales" ]; then
  echo "setup: everything is installed"
  exit 0
fi

if [ "$(id -u)" != 0 ]; then
  echo "setup: missing:" $need_packages $need_locales >&2
  echo "setup: run it as root: sudo $0" >&2
  exit 1
fi

if [ -n "$need_packages" ]; then
  echo "setup: installing" $need_packages
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -q
  # shellcheck disable=SC2086
  apt-get install -y -q --no-install-recommends $need_packages </dev/null
fi

need_locales=$(missing_locales)
if [ -n "$need_locales" ]; then
  echo "setup: generating locales" $need_locales
  for l in $need_locales; do
    line="$l UTF-8"
    if grep -q "^# *$line" /etc/locale.gen; then
      sed -i "s/^# *$line/$line/" /etc/locale.gen
    elif ! grep -qx "$line" /etc/locale.gen; then
      echo "$line" >>/etc/locale.gen
    fi
  done
  locale-gen
fi

still=$(missing_packages; missing_locales)
if [ -n "$still" ]; then
  echo "setup: still missing:" $still >&2
  exit 1
fi
echo "setup: done"
