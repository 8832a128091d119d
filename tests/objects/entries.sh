# Load time runs ownInit and nothing else: no constructors; relocations are read-only after load. $1 library
set -eu
dynamic=$(readelf -dW "$1")
grep -q '(INIT)' <<<"$dynamic"
if grep -E '\((INIT_ARRAY|FINI_ARRAY|FINI|TEXTREL)\)' <<<"$dynamic"; then exit 1; fi
grep -q 'BIND_NOW' <<<"$dynamic"
readelf -lW "$1" | grep -q GNU_RELRO
readelf -nW "$1" | grep -q 'IBT'
