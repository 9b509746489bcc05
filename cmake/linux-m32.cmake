# 32-bit x86 code on an x86_64 Linux machine, with the multilib compilers
# (Debian: g++-multilib). Floating point goes through SSE2, as on the host's 32-bit
# macOS targets, whose ABI has it: every double rounds to 64 bits as on 64-bit
# builds, where the x87 unit would keep 80 (so that, say, a long run of digits that
# overflows a double elsewhere would not overflow here). Libraries are looked up in
# the i386 folders.
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
set_property(GLOBAL PROPERTY FIND_LIBRARY_USE_LIB64_PATHS OFF)
set_property(GLOBAL PROPERTY FIND_LIBRARY_USE_LIB32_PATHS ON)
