#!/usr/bin/env bash
# Trains a cascade on drawn faces and finds the faces of a scene that it has not seen: detect_test.sh TRAIN DETECT
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1" "$work/faces.cascade"
"$1" --scene 1 "$work/scene.png" >"$work/places"
"$2" "$work/scene.png" "$work/faces.cascade" "$work/result.png" >"$work/found"
# As many as there are, and for each one whose middle and size are within a sixth of the face's size.
awk 'function far(a, b) { return (a > b ? a - b : b - a) > w[k] / 6 }
     FNR == NR { x[NR] = $1 + $3 / 2; y[NR] = $2 + $4 / 2; w[NR] = $3; next }
     { hits++; for (k in x) if (!far(x[k], $1 + $3 / 2) && !far(y[k], $2 + $4 / 2) && !far(w[k], $3)) seen[k] = 1 }
     END { print length(seen) " of " length(x) " faces by " hits " frames"
           exit !(length(x) == 6 && hits == 6 && length(seen) == 6) }' "$work/places" "$work/found"
