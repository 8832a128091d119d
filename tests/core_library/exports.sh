# The core library exports the functions of its header and nothing else. $1 library, $2 header
set -eu
exported=$(nm -D --defined-only "$1" | awk '{print $3}' | sort)
declared=$(sed -nE 's/^[a-zA-Z].*[ *](o[rw][nv][A-Za-z]+)\(.*\);$/\1/p' "$2" | sort)
[ -n "$declared" ] && diff <(echo "$declared") <(echo "$exported")
