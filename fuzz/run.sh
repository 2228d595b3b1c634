#!/usr/bin/env bash
# run.sh SECONDS [TARGET...]: runs fuzz targets of the preset `fuzz` for that long each, from their
# corpus, the seeds of built fonts and the packaged fonts of this machine. New inputs go to
# build/fuzz/found; findings to build/fuzz. KW_FUZZ_SEED=N makes a run go the same way again.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${1:?usage: fuzz/run.sh SECONDS [TARGET...]}
shift
build=${KW_FUZZ_BUILD:-build/fuzz}
max_font_bytes=200k
# The service that targets open need not read the fonts of this machine.
export FONTCONFIG_FILE=$PWD/tests/support/no-fonts.conf

# show_findings: what a machine that keeps no files found, to be copied out of its log.
show_findings() {
  local finding
  for finding in "$build"/{crash,leak,oom,timeout}-*; do
    [ -f "$finding" ] || continue
    echo "FAILED on $finding, gzip and base64: $(gzip -9c "$finding" | base64 -w 0 | head -c 65536)"
  done
  exit 1
}

if [ $# -eq 0 ]; then
  for program in "$build"/fuzzers/*; do
    set -- "$@" "$(basename "$program")"
  done
fi

for name in "$@"; do
  program="$build/fuzzers/$name"
  [ -x "$program" ] || { echo "no fuzz target $name in $build/fuzzers" >&2; exit 1; }
  found="$build/found/$name"
  mkdir -p "$found"
  corpus=("$found" "$build/fuzz/seeds/$name")
  [ ! -d "fuzz/corpus/$name" ] || corpus+=("fuzz/corpus/$name")
  if [ "$name" = font ]; then
    packaged="$build/packaged"
    mkdir -p "$packaged"
    find /usr/share/fonts /usr/share/wine/fonts -name '*.[to]tf' -size "-$max_font_bytes" \
      -exec ln -sft "$packaged" {} + 2>/dev/null || true
    corpus+=("$packaged")
  fi
  echo "== $name, $seconds s"
  "$program" -max_total_time="$seconds" -seed="${KW_FUZZ_SEED:-0}" -timeout=40 -rss_limit_mb=2048 \
    -max_len=262144 -artifact_prefix="$build/" -print_final_stats=1 "${corpus[@]}" || show_findings
done
