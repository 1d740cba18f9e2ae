#!/usr/bin/env bash
# Sets the machine up, builds everything and runs every test: ./test.sh [name pattern]
# The last line counts the CTest entries of all tiers; the exit status is 0 when none failed.
# With a pattern only the entries whose names match it run (ctest -R).
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
pattern=${1:-}
only=(${pattern:+-R "$pattern" --no-tests=ignore})
passed=0 failed=0 broken=()

scripts/setup-debian test || { echo "0 passed, 1 failed"; exit 1; }

# build PRESET: configures and builds; a build that fails counts as one failed test.
build() {
  echo "== build $1"
  if cmake --preset "$1" >"build/$1.configure.log" 2>&1 && cmake --build --preset "$1" >"build/$1.build.log" 2>&1
  then return 0; fi
  tail -n 60 "build/$1.configure.log" "build/$1.build.log" 2>/dev/null
  failed=$((failed + 1)); broken+=("build of $1")
  return 1
}

# run PRESET COMMAND...: runs the preset's tests with CTest under COMMAND and adds up what CTest wrote down.
run() {
  local preset=$1 report="$PWD/build/$1.junit.xml" head; shift
  echo "== test $preset"
  rm -f "$report"
  # Under Wine a test waits for its server more often than for a processor.
  "$@" ctest --preset "$preset" --parallel $((2 * $(nproc))) --output-junit "$report" "${only[@]}"
  # One attribute a line, so that neither their order nor the line breaks matter.
  head=$(tr '\n' ' ' <"$report" 2>/dev/null | grep -o '<testsuite [^>]*>' | head -n 1)
  count() { sed -n "s/.*[ \t]$1=\"\([0-9]*\)\".*/\1/p" <<<"$head"; }
  local tests bad skipped
  tests=$(count tests); bad=$(count failures); skipped=$(( $(count skipped) + $(count disabled) ))
  if [ "${tests:-0}" -eq 0 ]; then
    # With a pattern a tier may well have nothing to run; without one that is a fault of the build.
    [ -n "$pattern" ] || { failed=$((failed + 1)); broken+=("no test in $preset"); }
    return
  fi
  # A test that could not run proves nothing, so it counts as failed.
  passed=$((passed + tests - bad - skipped)); failed=$((failed + bad + skipped))
  [ $((bad + skipped)) -eq 0 ] || broken+=("$((bad + skipped)) of $preset")
}

mkdir -p build
build native-asan && run native-asan env UBSAN_OPTIONS=print_stacktrace=1
build windows-release && run windows-release scripts/wine-session
build fuzz && run fuzz env

[ ${#broken[@]} -eq 0 ] || printf 'Failed: %s\n' "${broken[@]}"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
