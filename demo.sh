#!/usr/bin/env bash
# Builds the DLL and shows it at work on a simulated host, under Wine:
#   ./demo.sh                  the pages of a device server's four ports: tables, and a picture in docs/images;
#                              then the two example programs, which set a port and rename it
#   ./demo.sh --offline        the same with the device server out of reach
#   ./demo.sh --interactive    leaves a port's page open for a person (needs a display)
# Installs with apt what is missing. The exit status is 0 when everything is as the device said.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

mode=online
case "${1:-}" in
  "") ;;
  --offline) mode=offline ;;
  --interactive) mode=interactive ;;
  -h | --help) sed -n '2,7s/^# \{0,1\}//p' "$0"; exit 0 ;;
  *) echo "usage: ./demo.sh [--offline | --interactive]" >&2; exit 2 ;;
esac
if [ $mode = interactive ] && [ -z "${DISPLAY:-}" ]; then
  echo "--interactive needs a display; without one, ./demo.sh writes a picture" >&2
  exit 2
fi

scripts/setup-debian demo
mkdir -p build docs/images
log=build/demo.log
echo "Building (log in $log) ..."
if ! { [ -e build/windows-release/build.ninja ] || cmake --preset windows-release; } >"$log" 2>&1 ||
  ! cmake --build --preset windows-release --target workbench push_settings rename_port >>"$log" 2>&1; then
  tail -n 40 "$log" >&2
  exit 1
fi

# captions Y|N: who draws the captions of windows. A person's desktop has a window manager for it; on the
# virtual display there is none, and the pictures would lack them unless Wine draws them itself.
captions() {
  local key='HKCU\Software\Wine\AppDefaults\workbench.exe\X11 Driver' mark="$WINEPREFIX/.captions"
  [ "$(cat "$mark" 2>/dev/null)" != "$1" ] || return 0
  scripts/wine-run reg.exe add "$key" /v Managed /d "$1" /f >/dev/null && echo "$1" >"$mark"
}
show_page() { scripts/wine-run build/windows-release/bin/workbench.exe show-page "$@"; }

# The example programs, unchanged, on a simulated host of their own.
run_example() {
  printf '\n$ %s\n' "$*"
  scripts/wine-run build/windows-release/bin/workbench.exe run "$@"
}
run_examples() {
  local port='KDNBUS\VELTRANETPORT\1&2F8C1D3A&0&01'
  run_example push_settings.exe "$port" 19200 7 even
  run_example rename_port.exe "$port" COM42
}

run_online() { captions N; show_page --png docs/images/port-page.png; run_examples; }
run_offline() { captions N; show_page --offline --png docs/images/port-page-offline.png; }
run_interactive() { captions Y; show_page --interactive; }
export -f captions show_page run_example run_examples run_online run_offline run_interactive
[ $mode != interactive ] || export KDUUI_KEEP_DISPLAY=1
scripts/wine-session bash -euc "run_$mode"
