#!/usr/bin/env bash
# Builds the DLL and shows it at work on a simulated host, under Wine:
#   ./demo.sh                  the devices, and every page of their settings: tables, and pictures in build/demo;
#                              what becomes of ports and their COM names when a device server is installed,
#                              installed again, renamed and removed: a table before and after each step;
#                              then the two example programs, which set a port and rename it, and kdport, the
#                              management program
#   ./demo.sh --offline        the port pages with the device server out of reach
#   ./demo.sh --docs-pictures  only the pages, and their pictures in docs/images
#   ./demo.sh --interactive    a stand-in for Device Manager: the devices in a window, in which a double click
#                              opens a port's pages; what was changed is printed (needs a display)
# Installs with apt what is missing. The exit status is 0 when everything is as it should be.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

mode=online pictures=build/demo
case "${1:-}" in
  "") ;;
  --offline) mode=offline ;;
  --docs-pictures) mode=pages pictures=docs/images ;;
  --interactive) mode=interactive ;;
  -h | --help) sed -n '2,12s/^# \{0,1\}//p' "$0"; exit 0 ;;
  *) echo "usage: ./demo.sh [--offline | --docs-pictures | --interactive]" >&2; exit 2 ;;
esac
if [ $mode = interactive ] && [ -z "${DISPLAY:-}" ]; then
  echo "--interactive needs a display; without one, ./demo.sh writes pictures" >&2
  exit 2
fi

scripts/setup-debian demo
mkdir -p build "$pictures"
log=build/demo.log
echo "Building (log in $log) ..."
if ! { [ -e build/windows-release/build.ninja ] || cmake --preset windows-release; } >"$log" 2>&1 ||
  ! cmake --build --preset windows-release --target workbench kdport push_settings rename_port >>"$log" 2>&1; then
  tail -n 40 "$log" >&2
  exit 1
fi

# show SUBCOMMAND...: runs a subcommand of the workbench and notes when something was not as it should be.
export wrong="" pictures
show() {
  printf '\n$ workbench %s\n' "$*"
  scripts/wine-run build/windows-release/bin/workbench.exe "$@" || wrong+=" $1"
}
# The exit status of everything that was shown.
finish() {
  if [ -n "$wrong" ]; then
    printf '\nNot as it should be:%s\n' "$wrong"
    return 1
  fi
  printf '\nAll of it is as it should be.\n'
}

# Every page, and the picture of each.
show_pages() {
  show tree --png "$pictures/device-tree.png"
  show show-page --tips --png 1 "$pictures/port-page.png" --png 3 "$pictures/port-page-rs485.png"
  show show-page --offline --port 1 --png 1 "$pictures/port-page-offline.png"
  show show-advanced --pictures "$pictures"
}
# What becomes of ports and their names: a table before and after each step.
show_stories() {
  show install --ports 8
  show reinstall --ports 8
  show rename
  show remove --ports 8
  show usb
}
# The example programs, unchanged, on a simulated host of their own.
show_examples() {
  local port='KDNBUS\VELTRANETPORT\1&2F8C1D3A&0&01'
  show run push_settings.exe "$port" 19200 7 even
  show run rename_port.exe "$port" COM42
}

# The management program: what is there, what is wrong, and many changes at once from a file.
show_management() {
  local file=$pictures/ports.csv server='ROOT\VELTRANET\0001'
  printf '%s\n' server,index,name,baud "$server,1,COM6,19200" "$server,2,COM7,19200" "$server,3,COM5,19200" >"$file"
  show run kdport.exe list
  # It finds something, and says so by its exit status.
  printf '\n$ workbench run --neglected kdport.exe check\n'
  if scripts/wine-run build/windows-release/bin/workbench.exe run --neglected kdport.exe check; then wrong+=" check"; fi
  show run --neglected kdport.exe repair --release-ghosts
  show run kdport.exe apply "$file" --dry-run
  show run kdport.exe apply "$file" --undo "$pictures/undo.csv"
  show run kdport.exe list --live
}

run_online() {
  show_pages
  show_stories
  show_examples
  show_management
  finish
}
run_pages() { show_pages; finish; }
run_offline() { show show-page --offline --png 1 "$pictures/port-page-offline.png"; finish; }
run_interactive() { show tree --interactive; finish; }
export -f show finish show_pages show_stories show_examples show_management run_online run_pages run_offline run_interactive
[ $mode != interactive ] || export KDUUI_KEEP_DISPLAY=1
scripts/wine-session bash -uc "run_$mode"
