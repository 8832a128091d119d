#!/usr/bin/env bash
# A made sequence: points move as its camera does, and what passes is found; sequences are read: motion_test.sh MOTION
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/made" "$work/read" "$work/frames"
"$1" "$work/made" 80 >"$work/told"
# Steps: count, median and 95 % of the error, share within half a pixel. Models: time, precision, recall, overlap.
awk '{ print; sub(/^ +/, ""); split($0, cell, /   +/) }
     cell[1] == "steps" { ok += cell[2] > 3000 && cell[3] < 0.15 && cell[4] < 0.6 && cell[5] > 95 }
     cell[1] == "Gaussian mixture" { ok += cell[3] > 0.95 && cell[4] > 0.9 && cell[5] > 0.9 }
     cell[1] == "counted mixture" { ok += cell[3] > 0.6 && cell[4] > 0.85 && cell[5] > 0.6 }
     cell[1] == "histogram model" { ok += cell[3] > 0.8 && cell[4] > 0.7 && cell[5] > 0.65 }
     END { exit ok != 4 }' "$work/told"
cp "$work"/made/frame*.png "$work/frames"
"$1" "$work/read" "$work/frames" | grep "3 of 480 x 320"
head -c $((5 * 100 * 96 * 3)) /dev/zero | "$1" "$work/read" - 100 96 | grep "5 of 100 x 96"
for wrong in "$work/none" "$work/told" "$work/read 7 7 7" "- 0 5"; do
  # shellcheck disable=SC2086
  ! "$1" "$work/read" $wrong </dev/null >"$work/answer" 2>&1 || { echo "accepted: $wrong" && exit 1; }
done
