#!/usr/bin/env bash
# Converts a mesh with the built tool into every output format and has other programs
# read the results: the Khronos glTF validator must report no error and no warning, and
# assimp must load each file. Skips (77) when a checker is missing, unless
# NEQBRIDGE_REQUIRE_CHECKERS is set (scripts/test sets it).
# usage: check_outputs.sh TOOL INPUT TOOLS-FOLDER
set -euo pipefail
tool=$1 input=$2 tools=$3
here="$(cd "$(dirname "$0")" && pwd)"

missing=""
command -v assimp >/dev/null || missing="assimp (assimp-utils)"
command -v node >/dev/null && [ -d "$tools/node_modules/gltf-validator" ] ||
    missing="$missing the glTF validator (scripts/gltf-validator)"
if [ -n "$missing" ]; then
    echo "missing: $missing"
    [ -z "${NEQBRIDGE_REQUIRE_CHECKERS:-}" ] && exit 77
    exit 1
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for output in mesh.glb embedded.gltf "side.gltf --side-buffer" mesh.obj \
    "flat.glb --no-uvs --no-colors --no-groups"; do
    set -- $output
    "$tool" convert "$input" "$work/$1" "${@:2}" -q
done
NODE_PATH="$tools/node_modules" node "$here/gltf-validate.js" \
    "$work/mesh.glb" "$work/embedded.gltf" "$work/side.gltf" "$work/flat.glb"
for file in mesh.glb embedded.gltf side.gltf mesh.obj flat.glb; do
    assimp info "$work/$file" >"$work/assimp.txt" 2>&1 ||
        { echo "assimp cannot read $file:"; cat "$work/assimp.txt"; exit 1; }
    echo "assimp reads $file: $(grep -E '^(Vertices|Faces):' "$work/assimp.txt" | xargs)"
done
