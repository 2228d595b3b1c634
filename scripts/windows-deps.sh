#!/usr/bin/env bash
# Cross builds the libraries that the Windows build links (ICU's common library, FreeType, expat,
# GoogleTest) from Debian's sources, once, into a cache outside of the tree. zlib is a package.
#
#   scripts/windows-deps.sh            builds what is missing
#   scripts/windows-deps.sh --prefix   prints the folder where it is or would be
#
# The cache is KW_CACHE_DIR, by default kwfontservice below XDG_CACHE_HOME or ~/.cache. A prefix is
# named after everything that goes into it; old ones may be deleted.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
toolchain=$root/cmake/windows/mingw-w64-x86_64.cmake
cache=${KW_CACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/kwfontservice}
icu_major=72

key=$(
  {
    cat "$root/scripts/windows-deps.sh" "$toolchain" "$root"/cmake/windows/icu-common/*
    dpkg-query -W -f '${Package} ${Version}\n' \
      g++-mingw-w64-x86-64-posix googletest icu-devtools libz-mingw-w64-dev
  } | sha256sum | cut -c 1-12
)
prefix=$cache/windows-$key
if [ "${1:-}" = --prefix ]; then
  echo "$prefix"
  exit 0
fi
[ ! -e "$prefix/.complete" ] || exit 0

mkdir -p "$cache"
exec 9>"$cache/windows.lock"
flock 9 # another tree may be building the same
[ ! -e "$prefix/.complete" ] || exit 0

work=$(mktemp -d "$cache/windows-build.XXXXXX")
trap 'rm -rf "$work"' EXIT
rm -rf "$prefix"

# quietly LABEL COMMAND...: one line, and the end of the log when it fails.
quietly() {
  local label=$1 status=0 started=$SECONDS
  shift
  # A subshell of its own keeps `set -e` alive inside, which a condition around it would switch off.
  set +e
  (
    set -e
    "$@"
  ) >"$work/$label.log" 2>&1 </dev/null
  status=$?
  set -e
  if [ "$status" -ne 0 ]; then
    echo "windows-deps.sh: $label failed:" >&2
    tail -n 40 "$work/$label.log" >&2
    exit 1
  fi
  echo "  $label: done ($((SECONDS - started)) s)"
}

# Source packages of the release proper, from the mirror in use, with an index of our own: the
# system's need not have any, and stays as it is.
fetch_sources() {
  mkdir -p "$work"/apt/lists/partial "$work"/apt/parts "$work"/src
  apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' 'Component: main' |
    awk '$2 !~ /-/ && !seen[$0]++ { print "deb-src", $0 }' >"$work/apt/sources.list"
  cat >"$work/apt/apt.conf" <<CONF
Dir::State::lists "$work/apt/lists";
Dir::Etc::sourcelist "$work/apt/sources.list";
Dir::Etc::sourceparts "$work/apt/parts";
Dir::Cache::pkgcache "";
Dir::Cache::srcpkgcache "";
Acquire::Retries "3";
APT::Sandbox::User "";
CONF
  export APT_CONFIG=$work/apt/apt.conf
  apt-get -q update
  cd "$work/src"
  apt-get -q source --download-only icu freetype expat
  local name
  for name in icu freetype expat; do
    # apt has verified the files.
    dpkg-source --no-check -x "$name"_*.dsc "$name"
  done
}

# cross NAME SOURCE [CMAKE ARGUMENTS...]
cross() {
  local name=$1 source=$2
  shift 2
  cmake -S "$source" -B "$work/build-$name" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DKW_WINDOWS_DEPS="$prefix" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib "$@"
  cmake --build "$work/build-$name"
  cmake --install "$work/build-$name"
}

# Converters, character properties and normalisation; no locales, collation or calendars.
trim_icu_data() {
  local full=$work/src/icu/source/data/in/icudt${icu_major}l.dat PATH=$PATH:/usr/sbin
  icupkg -l "$full" | grep -vE \
    '^[^/]+\.(cnv|icu|nrm|spp)$|^(root|res_index|pool|keyTypeData|likelySubtags|supplementalData|numberingSystems|metadata|icuver|currencyNumericCodes|langInfo|plurals|timezoneTypes|icustd)\.res$' \
    >"$work/unneeded.lst"
  icupkg -tl -r "$work/unneeded.lst" "$full" "$work/icudt${icu_major}l.dat"
}

# expat's CMake defines XML_DTD without a value, and Debian's patches compare it with 1.
mend_expat() {
  sed -i -E 's/^#cmakedefine (XML_DTD|XML_NS)$/#cmakedefine \1 1/' \
    "$work/src/expat/expat/expat_config.h.cmake"
}

echo "Cross building the libraries for Windows (once):"
quietly sources fetch_sources
quietly freetype cross freetype "$work/src/freetype" -DBUILD_SHARED_LIBS=OFF \
  -DFT_REQUIRE_ZLIB=ON -DFT_DISABLE_BZIP2=ON -DFT_DISABLE_PNG=ON -DFT_DISABLE_HARFBUZZ=ON \
  -DFT_DISABLE_BROTLI=ON
mend_expat
quietly expat cross expat "$work/src/expat/expat" -DEXPAT_SHARED_LIBS=OFF \
  -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_EXAMPLES=OFF -DEXPAT_BUILD_TESTS=OFF \
  -DEXPAT_BUILD_DOCS=OFF
quietly googletest cross googletest /usr/src/googletest -DCMAKE_CXX_STANDARD=20
quietly icu-data trim_icu_data
quietly icu cross icu "$root/cmake/windows/icu-common" -DICU_MAJOR=$icu_major \
  -DICU_SOURCE="$work/src/icu/source" -DICU_DATA="$work/icudt${icu_major}l.dat"
touch "$prefix/.complete"
