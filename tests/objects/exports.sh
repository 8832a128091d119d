# The library exports the names of the lists and nothing else. $1 library, then the lists
set -eu
library=$1
shift
exported=$(nm -D --defined-only "$library" | awk '{print $3}' | sort)
listed=$(sed -nE 's/^(ONE|TWO|SWAP)\((.*)\)$/\2/p' "$@" | sort)
[ -n "$listed" ] && diff <(echo "$listed") <(echo "$exported")
