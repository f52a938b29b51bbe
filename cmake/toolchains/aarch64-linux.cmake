# SPDX-License-Identifier: Apache-2.0
#
# AArch64 Linux with clang and lld, on a machine of another kind. scripts/aarch64-sysroot fills the folder
# KORA_AARCH64_ROOT with the libraries to build against and an emulator; CTest runs the programs with it.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

if(DEFINED ENV{KORA_AARCH64_ROOT})
    set(_kora_aarch64_root "$ENV{KORA_AARCH64_ROOT}")
else()
    cmake_path(SET _kora_aarch64_root NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../../build/aarch64-sysroot")
endif()
set(KORA_AARCH64_ROOT "${_kora_aarch64_root}" CACHE PATH "Folder that scripts/aarch64-sysroot has filled")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KORA_AARCH64_ROOT)
set(CMAKE_SYSROOT "${KORA_AARCH64_ROOT}/sysroot")
if(NOT EXISTS "${CMAKE_SYSROOT}")
    message(FATAL_ERROR "There is no ${CMAKE_SYSROOT}: run scripts/aarch64-sysroot, or set KORA_AARCH64_ROOT")
endif()

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET aarch64-linux-gnu)
set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-gnu)
foreach(kind IN ITEMS EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-fuse-ld=lld")
endforeach()

# Libraries come from the sysroot or from where the caller points, never from the machine itself. moc, rcc and uic
# are the machine's own: Qt's package looks for them below the sysroot, where a link leads to them.
set(CMAKE_FIND_ROOT_PATH "${CMAKE_SYSROOT}" ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind IN ITEMS LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/aarch64-run" "${KORA_AARCH64_ROOT}")
