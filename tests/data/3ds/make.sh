#!/usr/bin/env bash
# Remakes the 3DS test models with two 3DS writers that are not this project's: Assimp
# (box.3ds from box.obj and box.mtl, atlas.3ds of three textures from atlas.obj and atlas.mtl)
# and lib3ds (terrace.3ds from lib3ds_writer.c). Needs the
# Debian packages assimp-utils and lib3ds-dev; the tests themselves read only the .3ds files.
set -euo pipefail
cd "$(dirname "$0")"
assimp export box.obj box.3ds >/dev/null
assimp export atlas.obj atlas.3ds >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cc -std=c99 -O1 -o "$work/writer" lib3ds_writer.c -l3ds
"$work/writer" terrace.3ds
echo "wrote box.3ds, atlas.3ds and terrace.3ds"
