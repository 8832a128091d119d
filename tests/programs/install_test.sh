#!/usr/bin/env bash
# Installs into a temporary prefix, then uses the installed tree as its users do: every public header alone in C99 and
# C++, a C client through pkg-config, a C++ client through find_package, and the program of the README.
# $1 source directory, $2 build directory, $3 cmake, $4 C compiler, $5 C++ compiler, $6 flags of the sanitizers, if any
set -euo pipefail
source_dir=$1 build_dir=$2 cmake=$3 cc=$4 cxx=$5 sanitizers=${6:-}
here=$source_dir/tests/programs

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$cmake" --install "$build_dir" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/prefix" # an installed tree may be moved
prefix=$work/prefix

strict=(-pedantic -Wall -Wextra -Werror -fsyntax-only "-I$prefix/include")
headers=$(cd "$prefix/include" && find . -name '*.h' -printf '%P\n')
[ -n "$headers" ]
for header in $headers; do
  echo "#include \"$header\"" | "$cc" -std=c99 "${strict[@]}" -x c -
  echo "#include \"$header\"" | "$cxx" -std=c++11 "${strict[@]}" -x c++ -
done
echo "headers: $(wc -w <<<"$headers") alone as C99 and as C++"

export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name orvcv.pc)")
libdir=$(pkg-config --variable=libdir orvcv)
through_pkg_config() { # $1 program, $2 source
  # shellcheck disable=SC2046,SC2086 # lists of flags
  "$cc" -std=c99 -pedantic -Wall -Wextra -Werror $sanitizers "$2" -o "$work/$1" $(pkg-config --cflags --libs orvcv) \
    "-Wl,-rpath,$libdir" -lm
}
through_pkg_config client_c "$here/client.c"
"$work/client_c"

mkdir "$work/cpp"
cp "$here/client.cpp" "$work/cpp"
cat >"$work/cpp/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(client LANGUAGES CXX)
find_package(orvcv 8.2 REQUIRED)
add_executable(client client.cpp)
target_link_libraries(client PRIVATE orvcv::orvcv orvcv::orvcore)
END
"$cmake" -G Ninja -S "$work/cpp" -B "$work/cpp/build" "-DCMAKE_PREFIX_PATH=$prefix" "-DCMAKE_CXX_COMPILER=$cxx" \
  "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror $sanitizers" >/dev/null
"$cmake" --build "$work/cpp/build" >/dev/null
"$work/cpp/build/client"

# The README's program smooths an image of black left and white right: each row must rise from 0 to 255.
awk '/^```c$/ { inside = 1; next } /^```/ { if (inside) exit } inside' "$source_dir/README.md" >"$work/readme.c"
through_pkg_config readme "$work/readme.c"
{ printf 'P5\n32 8\n255\n' && for _ in {1..8}; do printf '\0%.0s' {1..16} && printf '\377%.0s' {1..16}; done; } \
  >"$work/in.pgm"
"$work/readme" <"$work/in.pgm" >"$work/out.pgm"
cmp -n 12 "$work/in.pgm" "$work/out.pgm"
tail -c +13 "$work/out.pgm" | od -An -v -tu1 -w32 | awk '
  { rows++; grays = 0
    for (i = 2; i <= NF; i++) { if ($i < $(i - 1)) bad = 1; if ($i > 0 && $i < 255) grays++ }
    if (NF != 32 || $1 != 0 || $32 != 255 || grays < 4) bad = 1 }
  END { exit bad || rows != 8 }' || { echo "the README program gave a wrong image"; exit 1; }
echo "README: its program compiles and smooths"
