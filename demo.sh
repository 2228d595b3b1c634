#!/usr/bin/env bash
# Installs what is missing, builds the example, and typesets a text into out/.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"

font=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf

scripts/setup.sh build
kw_step "Configuring" kw_configure release \
  -DKW_BUILD_TESTS=OFF -DKW_BUILD_BENCHMARKS=OFF -DKW_BUILD_EXAMPLES=ON
kw_step "Building" kw_build release --target typeset

mkdir -p out
build/release/examples/typeset/typeset --font "$font" \
  -o out/specimen.pdf --png out/specimen.png examples/typeset/specimen.txt

echo
echo "The page:      $kw_root/out/specimen.pdf"
echo "Its beginning: $kw_root/out/specimen.png"
