# Debian's cross compiler for 64-bit Arm; what it builds runs under qemu's user mode.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)
# For the libraries that are headers only; last, so that none of this machine's own comes first.
set(CMAKE_CXX_FLAGS_INIT "-idirafter /usr/include")
