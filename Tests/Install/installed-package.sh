#!/usr/bin/env bash
# Installs the kit, static with the sandbox and shared without, into a temporary prefix, and builds
# and runs the examples against it as a stranger would: with the machine's own compiler, which is
# g++, while the tests are built with clang; and the kit alone with clang and libc++, the library of
# phones, whose types have other destructors.
# Usage: installed-package.sh SOURCE_DIR BUILD_DIR
set -euo pipefail
source_dir=$1
build_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Not optimised: nothing here asks how fast it is.
install_kit() {  # NAME OPTION...
  local name=$1
  shift
  cmake -S "$source_dir" -B "$build_dir/$name" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS_RELEASE=-O0 -DHLVSDKPAYLEVENKIT_STRICT=ON \
    -DHLVSDKPAYLEVENKIT_TESTS=OFF "$@" >"$work/configure.log"
  cmake --build "$build_dir/$name" >"$work/build.log" || { cat "$work/build.log"; exit 1; }
  cmake --install "$build_dir/$name" --prefix "$work/$name" >"$work/install.log"
}

build_examples() {  # NAME OPTION...
  cmake -S "$source_dir/Examples" -B "$work/examples-$1" -G Ninja \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$work/$1" "${@:2}" >"$work/configure.log"
  cmake --build "$work/examples-$1" >"$work/build.log" || { cat "$work/build.log"; exit 1; }
}

echo "== static, with the sandbox"
install_kit static -DBUILD_SHARED_LIBS=OFF -DHLVSDKPAYLEVENKIT_SANDBOX=ON \
  -DHLVSDKPAYLEVENKIT_SERVER=OFF
build_examples static
"$work/examples-static/KitOnly"
"$work/examples-static/AddACard" "$work/store.sqlite"
"$work/examples-static/OwnLoop" "$work/store.sqlite"
"$work/examples-static/ChangeOfGuest" "$work/guests.sqlite"
"$work/examples-static/MinimalHost"
# The command was built with the tests.
cmake --install "$(dirname "$build_dir")" --prefix "$work/command" >"$work/install.log"
"$work/command/bin/paylevenkit" --store "$work/store.sqlite" cards

echo "== shared, the kit alone"
install_kit shared -DBUILD_SHARED_LIBS=ON -DHLVSDKPAYLEVENKIT_SANDBOX=OFF
build_examples shared
"$work/examples-shared/KitOnly"
library=$(find "$work/shared" -name 'libHLVSDKPaylevenKit.so')
nm -D --defined-only -C "$library" >"$work/symbols"
if grep -q asio "$work/symbols"; then echo "the queue library leaks out of the kit"; exit 1; fi
grep -q ' HLVSDKPaylevenKitVersionString$' "$work/symbols"

echo "== with clang and libc++, the kit alone"
libcxx=(-DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_FLAGS=-stdlib=libc++)
install_kit libcxx "${libcxx[@]}" -DHLVSDKPAYLEVENKIT_SANDBOX=OFF
build_examples libcxx "${libcxx[@]}"
"$work/examples-libcxx/MinimalHost"

echo "== pkg-config"
PKG_CONFIG_PATH=$(dirname "$(find "$work/shared" -name 'HLVSDKPaylevenKit.pc')")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
g++ -std=c++20 "$source_dir/Examples/KitOnly.cpp" -o "$work/kit-only" \
  $(pkg-config --cflags --libs HLVSDKPaylevenKit) -Wl,-rpath,"$(dirname "$library")"
"$work/kit-only"
