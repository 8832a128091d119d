# No object of a variant defines a symbol that the other variant's could replace: all carry the variant's prefix or
# namespace. $@ objects
bad=$(nm --defined-only "$@" | awk 'NF == 3 && $2 ~ /[VWuTDBRG]/ && $3 !~ /^(u8_|n8_|DW\.ref\.)/ && $3 !~ /^_Z[A-Z]*N?K?(3[un]8_|6[un]8_hwy)/' | sort -u)
[ -z "$bad" ] || { echo "$bad" | c++filt; exit 1; }
