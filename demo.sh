#!/usr/bin/env bash
# Installs what is missing, builds the example, and typesets a text into out/.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"

scripts/setup.sh build
kw_step "Configuring" kw_configure release \
  -DKW_BUILD_TESTS=OFF -DKW_BUILD_BENCHMARKS=OFF -DKW_BUILD_EXAMPLES=ON
kw_step "Building" kw_build release --target typeset

mkdir -p out
build/release/examples/typeset/typeset --config examples/font-config.xml \
  --family "Specimen Text" --heading-family "Specimen Headings" \
  -o out/specimen.pdf --png out/specimen.png examples/typeset/specimen.txt

echo
echo "The page:      $kw_root/out/specimen.pdf"
echo "Its beginning: $kw_root/out/specimen.png"
