# SPDX-License-Identifier: Apache-2.0
#
# A plugin folder holds one library per platform, at <os>/<arch>/lib<id>.so. The two folder names follow from
# the processor that is built for; a product with other names sets the cache variables itself.

if(WIN32)
    set(_kora_os "win32")
else()
    set(_kora_os "linux")
endif()

string(TOLOWER "${CMAKE_SYSTEM_PROCESSOR}" _kora_processor)
if(_kora_processor MATCHES "^(aarch64|arm64)")
    set(_kora_arch "ARM64")
elseif(_kora_processor MATCHES "^arm")
    set(_kora_arch "ARM32")
elseif(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(_kora_arch "x86")
else()
    set(_kora_arch "x64")
endif()

set(KORA_PLATFORM_OS   "${_kora_os}"   CACHE STRING "Operating system folder inside a plugin folder")
set(KORA_PLATFORM_ARCH "${_kora_arch}" CACHE STRING "Architecture folder inside a plugin folder")
mark_as_advanced(KORA_PLATFORM_OS KORA_PLATFORM_ARCH)
