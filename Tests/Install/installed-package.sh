#!/usr/bin/env bash
# Installs the kit, static with the sandbox and shared without, into a temporary prefix, and builds
# and runs the examples against it as an app would: with the machine's own compiler, which is
# g++, while the tests are built with clang; and the kit alone with clang and libc++, the library of
# phones, whose types have other destructors. The client and the command come from the tests' build.
# Usage: installed-package.sh SOURCE_DIR BUILD_DIR CXX_OF_THE_TESTS SANITIZERS_OF_THE_TESTS
set -euo pipefail
source_dir=$1
build_dir=$2
tests_compiler=("$3")
[ -z "${4:-}" ] || tests_compiler+=("-fsanitize=$4")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Not optimised: nothing here asks how fast it is.
install_kit() {  # NAME OPTION...
  local name=$1
  shift
  cmake -S "$source_dir" -B "$build_dir/$name" -G Ninja --no-warn-unused-cli -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS_RELEASE=-O0 -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
    -DHLVSDKPAYLEVENKIT_TESTS=OFF "$@" >"$work/configure.log"
  cmake --build "$build_dir/$name" >"$work/build.log" || { cat "$work/build.log"; exit 1; }
  cmake --install "$build_dir/$name" --prefix "$work/$name" >"$work/install.log"
}

build_project() {  # SOURCE PREFIX NAME OPTION...
  local source=$1 prefix=$2 name=$3
  shift 3
  cmake -S "$source" -B "$work/$name" -G Ninja \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix" "$@" >"$work/configure.log"
  cmake --build "$work/$name" >"$work/build.log" || { cat "$work/build.log"; exit 1; }
}

pkg_config() {  # PREFIX ARGUMENT...
  PKG_CONFIG_PATH=$(dirname "$(find "$1" -name HLVSDKPaylevenKit.pc)") pkg-config "${@:2}"
}

echo "== static, with the sandbox, without what only the server needs"
install_kit static -DBUILD_SHARED_LIBS=OFF -DHLVSDKPAYLEVENKIT_SANDBOX=ON \
  -DHLVSDKPAYLEVENKIT_SERVER=OFF \
  -DCMAKE_DISABLE_FIND_PACKAGE_{Boost,nlohmann_json,OpenSSL,CLI11}=ON
build_project "$source_dir/Examples" "$work/static" examples-static
"$work/examples-static/KitOnly"
"$work/examples-static/AddACard" "$work/store.sqlite"
"$work/examples-static/OwnLoop" "$work/store.sqlite"
"$work/examples-static/ChangeOfGuest" "$work/guests.sqlite"
"$work/examples-static/MinimalHost"

echo "== the kit alone, where the sandbox's libraries are missing"
cmake -S "$source_dir/Examples" -B "$work/examples-bare" -G Ninja \
  -DCMAKE_PREFIX_PATH="$work/static" -DCMAKE_DISABLE_FIND_PACKAGE_SQLiteCpp=ON >"$work/configure.log"
ninja -C "$work/examples-bare" -t targets all >"$work/targets"
grep -q '^KitOnly:' "$work/targets"
if grep -q '^AddACard:' "$work/targets"; then echo "the sandbox needs SQLiteCpp"; exit 1; fi

echo "== inside another project, which installs none of it"
mkdir "$work/outer"
printf 'cmake_minimum_required(VERSION 3.25)\nproject(Outer CXX)\nadd_subdirectory("%s" kit)\n' \
  "$source_dir" >"$work/outer/CMakeLists.txt"
cmake -S "$work/outer" -B "$work/outer/build" -G Ninja --no-warn-unused-cli \
  -DCMAKE_DISABLE_FIND_PACKAGE_{Boost,SQLiteCpp}=ON >"$work/configure.log"
cmake --install "$work/outer/build" --prefix "$work/outer/installed" >"$work/install.log"
[ ! -e "$work/outer/installed" ]

echo "== the command"
cmake --install "$(dirname "$build_dir")" --prefix "$work/command" >"$work/install.log"
command=$work/command/bin/paylevenkit
"$command" --store "$work/store.sqlite" cards
[ "$("$command" --version)" = "paylevenkit $(pkg_config "$work/command" --modversion HLVSDKPaylevenKit)" ]
groff -man -Tutf8 -ww "$work/command/share/man/man1/paylevenkit.1" 2>"$work/groff.log" >/dev/null
[ ! -s "$work/groff.log" ] || { cat "$work/groff.log"; exit 1; }
# shellcheck disable=SC1091
source "$work/command/share/bash-completion/completions/paylevenkit"
COMP_WORDS=(paylevenkit fault a) COMP_CWORD=2
_paylevenkit
[ "${COMPREPLY[*]}" = arm ]
# zsh takes what begins as the word does out of these by itself.
# shellcheck disable=SC2016
zsh -f -c 'autoload -U +X compinit && compinit -D && autoload -U +X bashcompinit && bashcompinit
  emulate sh && source "$1" && COMP_WORDS=(paylevenkit fault a) COMP_CWORD=2 && _paylevenkit
  [ "${COMPREPLY[0]}" = arm ]' zsh "$work/command/share/bash-completion/completions/paylevenkit"

echo "== the client"
exec {log}< <(exec "$command" --store "$work/served.sqlite" serve 2>&1)
server=$!
while read -r -u "$log" name url; do
  [ "$name" != provider ] || provider=$url
  [ "$name" != console ] || break
done
build_project "$source_dir/Tests/Install/Consumer" "$work/command" consumer \
  -DCMAKE_CXX_COMPILER="${tests_compiler[0]}" -DCMAKE_CXX_FLAGS="${tests_compiler[*]:1}"
"$work/consumer/Remote" "$provider"
# shellcheck disable=SC2046
"${tests_compiler[@]}" "$work/consumer/CMakeFiles/Remote.dir/Remote.cpp.o" -o "$work/remote" \
  $(pkg_config "$work/command" --libs HLVSDKPaylevenKitClient)
"$work/remote" "$provider"
kill "$server"

echo "== shared, the kit alone"
install_kit shared -DBUILD_SHARED_LIBS=ON -DHLVSDKPAYLEVENKIT_SANDBOX=OFF -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_COMPILER=g++ -DCMAKE_CXX_FLAGS_DEBUG="-O0 -g -femit-class-debug-always"
build_project "$source_dir/Examples" "$work/shared" examples-shared
"$work/examples-shared/KitOnly"
library=$(find "$work/shared" -name 'libHLVSDKPaylevenKit.so')
# Everything that is exported is declared in a header that is installed.
nm -D --defined-only -C "$library" >"$work/symbols"
grep -q ' HLVSDKPaylevenKitVersionString@@HLVSDKPaylevenKit_1$' "$work/symbols"
sed -E '/ HLVSDKPaylevenKit_1$/d; s/^[0-9a-f]* . //; s/\(.*//; s/^.* for //
  s/^hlv::([A-Za-z_]+).*/\1/; s/@@.*//' "$work/symbols" | sort -u >"$work/exported"
while read -r name; do
  grep -rqE "(class|struct) (HLV_EXPORT )?$name |[ &]$name(\(|\[|;)" "$work/shared/include" ||
    { echo "no installed header declares what is exported: $name"; exit 1; }
done <"$work/exported"
"$source_dir/scripts/abi" "$work/shared"
# shellcheck disable=SC2046
g++ -std=c++20 "$source_dir/Examples/KitOnly.cpp" -o "$work/kit-only" \
  $(pkg_config "$work/shared" --cflags --libs HLVSDKPaylevenKit) -Wl,-rpath,"$(dirname "$library")"
"$work/kit-only"

echo "== with clang and libc++, the kit alone"
libcxx=(-DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_FLAGS=-stdlib=libc++)
install_kit libcxx "${libcxx[@]}" -DHLVSDKPAYLEVENKIT_SANDBOX=OFF
build_project "$source_dir/Examples" "$work/libcxx" examples-libcxx "${libcxx[@]}"
"$work/examples-libcxx/MinimalHost"

echo "== the reference"
"$source_dir/scripts/reference" "$work/command" "$work/reference"
