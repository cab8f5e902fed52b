#!/bin/bash
# Prints the package's version: that of CMakeLists.txt for a release and for a tree without its history; after it
# 1.0.1+git1, 1.0.1+git2 and so on by commits, which Debian sorts between this release and the next. The release is the
# commit with the tag v1.0.1; without such a tag the one that wrote the version into CMakeLists.txt.

set -euo pipefail
cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.."

# The clone may belong to somebody else than who packs it.
in_git() { git -c safe.directory="$PWD" "$@"; }

version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
commits=0
if [[ -e .git ]] && ! command -v git >/dev/null; then
  echo "Without git the package gets the plain version $version." >&2
elif [[ -e .git ]]; then
  if [[ $(in_git rev-parse --is-shallow-repository) == true ]]; then
    echo "This clone is shallow: the package's version counts only the commits that are here." >&2
  fi
  release=$(in_git rev-parse --quiet --verify "v$version^{commit}" ||
    in_git log -1 --format=%H -S"project(vantaro-pugnado VERSION $version " -- CMakeLists.txt)
  commits=$(in_git rev-list --count "${release:-HEAD}..HEAD")
fi
if ((commits > 0)); then version+="+git$commits"; fi
echo "$version"
