# SPDX-License-Identifier: Apache-2.0

# Warnings and sanitizers of a target of this repository.
function(kora_compile_settings target)
    target_compile_features(${target} PRIVATE cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
        QT_DISABLE_DEPRECATED_BEFORE=0x050F00 QT_NO_FOREACH
    )
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion)
    if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        target_compile_options(${target} PRIVATE -Wno-sign-conversion) # GCC's -Wconversion does without it in C++
    endif()
    # AArch64 could compute a*b+c with one rounding, x86-64 with two: the same numbers and pictures on both.
    target_compile_options(${target} PRIVATE -ffp-contract=off)
    target_compile_options(${target} PRIVATE -fstack-protector-strong)
    if(KORA_DEVELOPER_BUILD)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(KORA_SANITIZER)
        target_compile_options(${target} PRIVATE -fsanitize=${KORA_SANITIZER} -fno-sanitize-recover=all
            -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${KORA_SANITIZER})
        if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
            # They compare type information by address, which hidden symbols have once in each library.
            target_compile_options(${target} PRIVATE -fno-sanitize=vptr,function)
        endif()
        get_target_property(type ${target} TYPE)
        if(KORA_SANITIZER MATCHES "thread" AND type STREQUAL "EXECUTABLE")
            target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/qmutexinterposer.cpp)
            target_link_libraries(${target} PRIVATE ${CMAKE_DL_LIBS})
        endif()
    endif()
endfunction()
