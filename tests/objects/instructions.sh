# Wide instructions stand only in the kernels of their width, MOVBE only in the n8 variant. $1 library
objdump -d --no-show-raw-insn "$1" | awk '
  /^[0-9a-f]+ </ { f = $2 }
  /\t(v[a-z0-9]+|k[a-z]+[bwdq]) / && f !~ /N_AVX[23]/ { print "wide:", f, $0; bad = 1 }
  /%zmm|%[xy]mm(1[6-9]|2[0-9]|3[01])/ && f !~ /N_AVX3/ { print "AVX-512:", f, $0; bad = 1 }
  /\tmovbe / && f !~ /n8_/ { print "movbe:", f, $0; bad = 1 }
  /\tvfn?m(add|sub)/ { print "fused multiply-add:", f, $0; bad = 1 }
  f ~ /N_AVX3/ && /%zmm/ { wide = 1 }
  END { if (!wide) print "no AVX-512 kernel found"; exit bad || !wide }'
