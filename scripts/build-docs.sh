#!/usr/bin/env bash
# Builds the reference of the public headers into build/docs/html. Any Doxygen warning is an error,
# and so is a class without a comment of its own.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mkdir -p build/docs
version=$(sed -n 's/^ *VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt | head -n 1)
sed -e "s|@PROJECT_VERSION@|$version|" -e "s|@OUTPUT_DIRECTORY@|build/docs|" \
  docs/Doxyfile.in >build/docs/Doxyfile
doxygen build/docs/Doxyfile

# The same without output, told to name everything that has no comment.
{
  cat build/docs/Doxyfile
  printf '%s\n' 'EXTRACT_ALL = NO' 'GENERATE_HTML = NO' 'GENERATE_XML = NO' 'WARN_AS_ERROR = NO'
} >build/docs/Doxyfile.undocumented
if doxygen build/docs/Doxyfile.undocumented 2>&1 | grep -E 'Compound .* is not documented'; then
  exit 1
fi
