#!/usr/bin/env bash
# Sets the machine up, builds everything and runs every test: ./test.sh [name pattern]
# The last line counts the CTest entries of all tiers; the exit status is 0 when none failed.
# With a pattern only the entries whose names match it are built and run (ctest -R).
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
pattern=${1:-}
only=(${pattern:+-R "$pattern"})

# The programs for Windows are built first; what runs and checks them is installed beside that.
no_setup() { echo "0 passed, 1 failed"; exit 1; }
scripts/setup-debian build || no_setup

# count PRESET PASSED FAILED [WHAT]: what came of a preset; WHAT says what failed.
count() {
  echo "$2 $3" >"build/$1.count"
  [ -z "${4:-}" ] || echo "$4" >>"build/$1.count"
}

# configure PRESET: makes the preset's build files, or brings those up to date that are there.
configure() {
  if [ -e "build/$1/build.ninja" ]; then cmake --build --preset "$1" --target build.ninja; else cmake --preset "$1"; fi
}

# needed PRESET: the programs that the entries run, as names of the preset's build files. An entry has no command as long
# as its program was never built; then everything is needed.
needed() {
  local json
  json=$(ctest --preset "$1" --show-only=json-v1 "${only[@]}")
  [ "$(grep -cE '"command" : *$' <<<"$json")" -eq "$(grep -c '"properties"' <<<"$json")" ] || { echo all; return; }
  grep -oE "\"$PWD/build/$1/bin/[^\"]+\"" <<<"$json" | sed "s|^\"$PWD/build/$1/||; s|\"\$||" | sort -u
}

# run PRESET [COMMAND...]: runs the preset's tests with CTest, under COMMAND, and adds up what CTest wrote down.
run() {
  local preset=$1 report="$PWD/build/$1.junit.xml" head tests bad skipped; shift
  echo "== test $preset"
  rm -f "$report"
  # Under Wine a test waits for its server more often than for a processor.
  "$@" ctest --preset "$preset" --parallel $((2 * $(nproc))) --output-junit "$report" "${only[@]}"
  # One attribute a line, so that neither their order nor the line breaks matter.
  head=$(tr '\n' ' ' <"$report" 2>/dev/null | grep -o '<testsuite [^>]*>' | head -n 1)
  value() { sed -n "s/.*[ \t]$1=\"\([0-9]*\)\".*/\1/p" <<<"$head"; }
  tests=$(value tests); bad=$(value failures)
  # A test that could not run proves nothing, so it counts as failed.
  skipped=$(( $(value skipped) + $(value disabled) ))
  if [ "${tests:-0}" -eq 0 ]; then count "$preset" 0 1 "no test in $preset"; return; fi
  bad=$((bad + skipped))
  count "$preset" $((tests - bad)) $bad
  [ $bad -eq 0 ] || echo "$bad of $preset" >>"build/$preset.count"
}

# build PRESET: builds what the entries need, all of the preset without a pattern. Fails where it does not build, or
# where the pattern leaves nothing to run.
build() {
  local preset=$1 targets=()
  if ! configure "$preset" >"build/$preset.configure.log" 2>&1; then
    tail -n 60 "build/$preset.configure.log"
    count "$preset" 0 1 "configuration of $preset"; return 1
  fi
  if [ -n "$pattern" ]; then
    if ctest --preset "$preset" -N "${only[@]}" --no-tests=ignore | grep -q '^Total Tests: 0'; then return 1; fi
    mapfile -t targets < <(needed "$preset")
    # A check or the archive's test needs no program.
    [ ${#targets[@]} -gt 0 ] || return 0
    targets=(--target "${targets[@]}")
  fi
  echo "== build $preset"
  cmake --build --preset "$preset" "${targets[@]}" >"build/$preset.build.log" 2>&1 && return 0
  tail -n 60 "build/$preset.build.log"
  # A build that fails counts as one failed test.
  count "$preset" 0 1 "build of $preset"; return 1
}

mkdir -p build
rm -f build/*.count
# What runs natively is built and run beside the tests for Windows, which leave the processors idle half the time.
native() {
  build native-asan && run native-asan
  build fuzz && run fuzz
}
windows() { run windows-release scripts/wine-session; }
if [ -n "$pattern" ]; then
  scripts/setup-debian test || no_setup
  native
  build windows-release && windows
else
  build windows-release &
  scripts/setup-debian test || { wait; no_setup; }
  if wait $!; then
    native_output=build/native.log
    (renice -n 10 $BASHPID >/dev/null; native) >$native_output 2>&1 &
    windows
    wait $!
    cat $native_output
  else
    native
  fi
fi

passed=0 failed=0
for file in build/*.count; do
  [ -e "$file" ] || continue
  read -r good bad <"$file"
  passed=$((passed + good)); failed=$((failed + bad))
  sed '1d; s/^/Failed: /' "$file"
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
