#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests. Arguments go to ctest: ./test.sh -R Cmap
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"

scripts/setup.sh test
kw_step "Configuring" kw_configure release \
  -DKW_BUILD_TESTS=ON -DKW_BUILD_BENCHMARKS=OFF -DKW_BUILD_EXAMPLES=ON
kw_step "Building" kw_build release
kw_ctest release "$@"
