#!/usr/bin/env bash
# Installs what the named groups need and the system lacks, by Debian package name.
#
#   scripts/setup.sh [--list] build|test|windows|ci|bench ...
#
# build: to build the libraries and the example, and to show it; test: to run all tests;
# windows: to cross build for Windows and run its tests under Wine, and the libraries for that, which
# scripts/windows-deps.sh builds once; ci: what the further checks use; bench: many more fonts, for
# benchmarks that mean something. Each brings the packages of the ones before it. With --list the
# names are printed and nothing is installed.
set -euo pipefail

build_packages=(
  cmake ninja-build g++ pkg-config
  libicu-dev libfreetype-dev zlib1g-dev libexpat1-dev libfontconfig-dev
  libqpdf-dev libpng-dev
  fonts-dejavu-core fonts-liberation2 fonts-hosny-amiri fonts-ipafont-mincho fonts-linuxlibertine
)
test_packages=(
  libgtest-dev libgmock-dev libharfbuzz-dev
  python3 python3-fonttools opentype-sanitizer poppler-utils ghostscript t1utils
  woff-tools chromium
  fonts-dejavu-extra fonts-dejavu-web
  fonts-noto-cjk fonts-ipafont-gothic
  fonts-arphic-gbsn00lp fonts-arphic-uming fonts-wqy-zenhei
  fonts-lmodern lmodern fonts-texgyre-math fonts-urw-base35
  fonts-lohit-deva fonts-wine
)
windows_packages=(
  g++-mingw-w64-x86-64-posix libz-mingw-w64-dev
  wine wine64 locales
  googletest icu-devtools dpkg-dev
)
ci_packages=(
  clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev
  doxygen
  libbenchmark-dev
)
bench_packages=(
  fonts-noto-core fonts-nanum fonts-unfonts-core fonts-unifont fonts-vlgothic
  fonts-freefont-otf fonts-sil-padauk
  cm-super-minimal texlive-fonts-recommended xfonts-scalable
  afdko-bin
)

list_only=false
windows=false
wanted=()
for argument in "$@"; do
  case "$argument" in
    --list) list_only=true ;;
    build) wanted+=("${build_packages[@]}") ;;
    test) wanted+=("${build_packages[@]}" "${test_packages[@]}") ;;
    windows)
      windows=true
      wanted+=("${build_packages[@]}" "${test_packages[@]}" "${windows_packages[@]}")
      ;;
    ci)
      wanted+=("${build_packages[@]}" "${test_packages[@]}" "${windows_packages[@]}"
        "${ci_packages[@]}")
      ;;
    bench)
      wanted+=("${build_packages[@]}" "${test_packages[@]}" "${windows_packages[@]}"
        "${ci_packages[@]}" "${bench_packages[@]}")
      ;;
    *)
      echo "setup.sh: unknown group '$argument' (build, test, windows, ci or bench)" >&2
      exit 2
      ;;
  esac
done
if [ ${#wanted[@]} -eq 0 ]; then
  echo "usage: scripts/setup.sh [--list] build|test|windows|ci|bench ..." >&2
  exit 2
fi
if $list_only; then
  printf '%s\n' "${wanted[@]}" | sort -u
  exit 0
fi

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
  echo "setup.sh: not a Debian system; the packages below, or their like, must be present:" >&2
  echo "  $(printf '%s\n' "${wanted[@]}" | sort -u | tr '\n' ' ')" >&2
  exit 0
fi

missing=()
for package in $(printf '%s\n' "${wanted[@]}" | sort -u); do
  status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done

build_libraries() {
  ! $windows || "$(dirname "${BASH_SOURCE[0]}")/windows-deps.sh"
}

if [ ${#missing[@]} -eq 0 ]; then
  build_libraries
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
    if [ -t 0 ] && command -v sudo >/dev/null; then
      echo "setup.sh: sudo will ask for a password to install packages" >&2
    else
      echo "setup.sh: these packages are missing and there is no right to install them:" >&2
      echo "  ${missing[*]}" >&2
      echo "Install them as root:  apt-get install ${missing[*]}" >&2
      exit 1
    fi
  fi
  as_root=(sudo)
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT

# Another package run may hold a lock, or a mirror may stumble: a few tries before it is an error.
attempt() {
  local try
  for try in 1 2 3; do
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get \
      -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@" >>"$log" 2>&1 </dev/null && return 0
    [ "$try" -eq 3 ] || sleep 10
  done
  echo "setup.sh: 'apt-get $*' failed:" >&2
  tail -n 30 "$log" >&2
  return 1
}

echo "Installing: ${missing[*]}"
attempt -q update
attempt -q -y --no-install-recommends install "${missing[@]}"
build_libraries
