#!/usr/bin/env bash
# Installs what is missing, builds the examples, typesets two texts and lists the fonts into out/.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"

scripts/setup.sh build
kw_step "Configuring" kw_configure release \
  -DKW_BUILD_TESTS=OFF -DKW_BUILD_BENCHMARKS=OFF -DKW_BUILD_EXAMPLES=ON
kw_step "Building" kw_build release --target fontlist typeset

mkdir -p out
typeset=(build/release/examples/typeset/typeset --config examples/font-config.xml)
"${typeset[@]}" --family "Specimen Text" --heading-family "Specimen Headings" \
  -o out/specimen.pdf --png out/specimen.png examples/typeset/specimen.txt
echo
"${typeset[@]}" --family "Shaping Text" --family "Shaping Arabic" --family "Shaping Japanese" \
  --heading-family "Shaping Headings" \
  -o out/shaping.pdf --png out/shaping.png --whole-page examples/typeset/shaping.txt
build/release/examples/fontlist/fontlist --config examples/font-config.xml \
  --png out/fonts.png >out/fonts.txt

echo
echo "A specimen:    $kw_root/out/specimen.pdf"
echo "Its beginning: $kw_root/out/specimen.png"
echo "Shaped text:   $kw_root/out/shaping.pdf"
echo "The same page: $kw_root/out/shaping.png"
echo "The fonts:     $kw_root/out/fonts.txt, $kw_root/out/fonts.png"
