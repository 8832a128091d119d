# The library exports the names of the manifest and nothing else. $1 library, $2 manifest
set -eu
exported=$(nm -D --defined-only "$1" | awk '{print $3}' | sort)
listed=$(sed -nE 's/^(ONE|TWO|SWAP)\((.*)\)$/\2/p' "$2" | sort)
[ -n "$listed" ] && diff <(echo "$listed") <(echo "$exported")
