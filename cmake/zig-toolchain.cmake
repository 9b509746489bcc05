# Cross-compiles with `zig cc` / `zig c++`, which bring their own C and C++ libraries
# for each target. NEQBRIDGE_ZIG_TARGET is a Zig target such as x86_64-macos or
# aarch64-macos; NEQBRIDGE_ZIG is the zig executable (default: the pinned one that
# scripts/fetch-zig keeps in the user's cache).
#
#   cmake -S . -B build/x -DCMAKE_TOOLCHAIN_FILE=cmake/zig-toolchain.cmake \
#         -DNEQBRIDGE_ZIG_TARGET=aarch64-macos

if(NOT NEQBRIDGE_ZIG_TARGET)
    message(FATAL_ERROR "set NEQBRIDGE_ZIG_TARGET, e.g. -DNEQBRIDGE_ZIG_TARGET=x86_64-macos")
endif()
if(NOT NEQBRIDGE_ZIG)
    if(DEFINED ENV{NEQBRIDGE_CACHE})
        set(zig_cache "$ENV{NEQBRIDGE_CACHE}")
    elseif(DEFINED ENV{XDG_CACHE_HOME})
        set(zig_cache "$ENV{XDG_CACHE_HOME}/neqbridge")
    else()
        set(zig_cache "$ENV{HOME}/.cache/neqbridge")
    endif()
    set(NEQBRIDGE_ZIG "${zig_cache}/zig/zig")
endif()
if(NOT EXISTS "${NEQBRIDGE_ZIG}")
    message(FATAL_ERROR "no Zig compiler at ${NEQBRIDGE_ZIG}: run scripts/fetch-zig")
endif()
# try_compile projects read this file again and need the same answers.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES NEQBRIDGE_ZIG NEQBRIDGE_ZIG_TARGET)

string(REPLACE "-" ";" target_parts "${NEQBRIDGE_ZIG_TARGET}")
list(GET target_parts 0 CMAKE_SYSTEM_PROCESSOR)
list(GET target_parts 1 target_os)
if(target_os MATCHES "^macos")
    set(CMAKE_SYSTEM_NAME Darwin)
elseif(target_os STREQUAL "linux")
    set(CMAKE_SYSTEM_NAME Linux)
else()
    message(FATAL_ERROR "zig-toolchain.cmake knows macos and linux targets, not ${target_os}")
endif()

# The compiler is a driver script followed by its fixed arguments (CMake passes a list
# given as the compiler as the program and its first arguments).
set(zig_driver "${CMAKE_CURRENT_LIST_DIR}/zig-driver")
set(CMAKE_C_COMPILER "${zig_driver}" "${NEQBRIDGE_ZIG}" cc -target ${NEQBRIDGE_ZIG_TARGET})
set(CMAKE_CXX_COMPILER "${zig_driver}" "${NEQBRIDGE_ZIG}" c++ -target ${NEQBRIDGE_ZIG_TARGET})

# Archives in the target's own format (BSD-style for macOS), from Zig's archiver.
foreach(lang C CXX)
    set(CMAKE_${lang}_ARCHIVE_CREATE "\"${NEQBRIDGE_ZIG}\" ar qc <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_${lang}_ARCHIVE_APPEND "\"${NEQBRIDGE_ZIG}\" ar q <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_${lang}_ARCHIVE_FINISH "\"${NEQBRIDGE_ZIG}\" ranlib <TARGET>")
endforeach()

# Nothing of the build machine belongs in a cross build.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
