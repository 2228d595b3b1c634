# shellcheck shell=bash
# Sourced by demo.sh, test.sh and .ci/run. Needs bash and a caller under `set -euo pipefail`.

kw_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
kw_jobs=$(nproc 2>/dev/null || echo 2)
cd "$kw_root"

# Nothing here asks; a tool that tries to must fail and not wait. (setup.sh may still ask a person
# at a terminal for the password of sudo, which reads it from there.)
if [ "${CI:-}" = true ] || [ ! -t 0 ]; then
  exec </dev/null
fi

# kw_step LABEL COMMAND...: runs the command with its output in a log. One line on success; on
# failure the end of the log as well, and the command's status.
kw_step() {
  local label=$1 log status=0 started=$SECONDS
  shift
  log=$(mktemp "${TMPDIR:-/tmp}/kw-step.XXXXXX")
  [ ! -t 1 ] || printf '%s ...' "$label"
  # A subshell of its own keeps `set -e` alive inside, which a condition around it would switch off.
  set +e
  (
    set -e
    "$@"
  ) >"$log" 2>&1
  status=$?
  set -e
  [ ! -t 1 ] || printf '\r'
  if [ "$status" -eq 0 ]; then
    printf '%s: done (%d s)\n' "$label" "$((SECONDS - started))"
  else
    printf '%s: FAILED (%d s)\n' "$label" "$((SECONDS - started))"
    tail -n "${KW_LOG_LINES:-120}" "$log"
  fi
  rm -f "$log"
  return "$status"
}

# kw_configure PRESET [CMAKE ARGUMENTS...]
kw_configure() {
  local preset=$1 launcher
  shift
  launcher=$(command -v ccache || true)
  # A tree that was moved or copied brings a cache that speaks of another place.
  if [ -f "build/$preset/CMakeCache.txt" ] &&
    ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$kw_root" "build/$preset/CMakeCache.txt"; then
    rm -rf "build/$preset"
  fi
  # So does one whose libraries have been built anew since.
  if [ "$preset" = windows ] && [ -f "build/$preset/CMakeCache.txt" ] &&
    ! grep -qF "KW_WINDOWS_DEPS:PATH=$(scripts/windows-deps.sh --prefix)" \
      "build/$preset/CMakeCache.txt"; then
    rm -rf "build/$preset"
  fi
  cmake --preset "$preset" "-DCMAKE_CXX_COMPILER_LAUNCHER=$launcher" "$@"
}

# kw_build PRESET [CMAKE --build ARGUMENTS...]
kw_build() {
  local preset=$1
  shift
  cmake --build --preset "$preset" -j "$kw_jobs" "$@"
}

# kw_ctest PRESET [CTEST ARGUMENTS...]: all tests; shows the closing lines, and whatever failed.
kw_ctest() {
  local preset=$1 log status=0
  shift
  log="build/$preset/ctest.log"
  ctest --test-dir "build/$preset" -j "$kw_jobs" --output-on-failure --no-tests=error \
    --no-label-summary "$@" >"$log" 2>&1 || status=$?
  if [ "$status" -eq 0 ]; then
    sed -n '/tests passed/,$p' "$log"
  else
    grep -vE '^ *[0-9]+/[0-9]+ Test .* Passed |^ +Start +[0-9]+:' "$log" || true
    echo "(the whole log: build/$preset/ctest.log)"
  fi
  return "$status"
}
