# SPDX-License-Identifier: Apache-2.0
#
# kora_add_widget_library(<target>
#     ID <uuid>
#     METADATA <file.json>
#     SOURCES <file>...
#     [TRANSLATIONS <xx-XX.csv>...]
#     [RESOURCES <file>...]
#     [TESTS <file.cpp>...])
#
# Builds a widget library as a folder that a host can load as it is:
#
#     <plugins>/<id>/<os>/<arch>/lib<id>.so
#
# with <plugins> being "plugins" below the top build folder and, after installation, below the prefix. The
# smallest use:
#
#     find_package(KRPluginLibrary REQUIRED)
#     kora_add_widget_library(boiler
#         ID 6f1d7f1e-1c7c-4c39-9d0e-0c8a1d2b3e4f
#         METADATA boiler.json
#         SOURCES boiler.cpp boiler.h
#     )
#
# ID            The plugin's UUID without braces, letter by letter as "id" in the JSON file.
# METADATA      The file that Q_PLUGIN_METADATA names. Its folder is on the include path, so the class writes
#               FILE "boiler.json" wherever the source file stands. The library is rebuilt when the file changes.
# SOURCES       Sources and headers. Classes with Q_OBJECT need no further step.
# TRANSLATIONS  One file per language, named by it ("it-IT.csv"). Each becomes the resource
#               ":/<id>/resources/translation/<language>.csv", where the library looks for the languages that the
#               JSON file lists under "translation".
# RESOURCES     Files that the widgets read, in the folder of the calling CMakeLists.txt or below it. Each becomes
#               the resource ":/<id>/resources/<path relative to that folder>".
#
# TESTS         Test programs, one source file each, with KORA_TESTKIT_MAIN of the test kit. They become CTest tests;
#               the macro KORA_TEST_PLUGIN_FOLDER is the plugin folder that they test. Where the programs could not run,
#               when building for another processor without an emulator, they are left out.
#
# Before anything is compiled, `kora check` looks at the metadata: a mistake stops the build with file, line and
# column. CTest gets <target>_check, for the plugin folder, and <target>_load, which also tries all widgets out. The
# targets <target>_bench and, for the first library of a project, bench show the widgets in the test bench.
#
# The result is an ordinary target: target_link_libraries(boiler PRIVATE Qt5::Svg) works as everywhere. It links
# KRPluginLibrary::KRPluginLibrary, exports nothing but the plugin's entry points, has no undefined symbols and,
# once loaded, stays mapped until the process ends, because widgets may outlive the loader.
#
# Variables, each to be set before the call:
#
# KORA_PLATFORM_OS, KORA_PLATFORM_ARCH  names of the folders <os> and <arch>, used in lower case
# KORA_PLUGIN_OUTPUT_DIR                another <plugins> in the build tree
# KORA_PLUGIN_INSTALL_DIR               another <plugins> on installation, relative to the prefix; empty: the
#                                       library is not installed
# KORA_TOOL                             the kora command of this machine; found beside the package or in PATH
# KORA_CHECK                            OFF: neither check nor tests with the kora command

set(KORA_PLUGIN_OUTPUT_DIR  "${CMAKE_BINARY_DIR}/plugins" CACHE STRING "Plugin folders in the build tree")
set(KORA_PLUGIN_INSTALL_DIR "plugins" CACHE STRING "Plugin folders on installation, relative to the prefix")
option(KORA_CHECK "Check the metadata of widget libraries with the kora command" ON)
mark_as_advanced(KORA_PLUGIN_OUTPUT_DIR KORA_PLUGIN_INSTALL_DIR KORA_CHECK)

function(kora_add_widget_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "ID;METADATA" "SOURCES;TRANSLATIONS;RESOURCES;TESTS")
    set(call "kora_add_widget_library(${target})")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "${call}: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
    endif()
    foreach(required IN ITEMS ID METADATA SOURCES)
        if(NOT arg_${required})
            message(FATAL_ERROR "${call}: ${required} is missing")
        endif()
    endforeach()
    _kora_make_absolute("${call}" arg_METADATA arg_TRANSLATIONS arg_RESOURCES arg_TESTS)
    _kora_check_id("${call}" "${arg_ID}" "${arg_METADATA}")
    _kora_write_resource_list("${call}" resource_list)

    add_library(${target} MODULE ${arg_SOURCES} ${arg_METADATA} ${resource_list})
    target_compile_features(${target} PRIVATE cxx_std_17)
    # AUTOMOC runs again when the JSON file changes, but Ninja learns too late that a "plugin.moc" is new which a
    # source file includes: without this the library would carry the metadata before the last change.
    set_property(SOURCE ${arg_SOURCES} APPEND PROPERTY OBJECT_DEPENDS ${arg_METADATA})
    cmake_path(GET arg_METADATA PARENT_PATH metadata_dir)
    target_include_directories(${target} PRIVATE ${metadata_dir})
    target_link_libraries(${target} PRIVATE KRPluginLibrary::KRPluginLibrary)
    target_link_options(${target} PRIVATE -Wl,--no-undefined -Wl,-z,nodelete)

    string(TOLOWER ${KORA_PLATFORM_OS}/${KORA_PLATFORM_ARCH} platform_dir)
    set(library_dir ${arg_ID}/${platform_dir})
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        AUTORCC ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        PREFIX lib
        OUTPUT_NAME ${arg_ID}
        DEBUG_POSTFIX ""
        # The generator expression keeps multi-configuration generators from adding a folder of their own.
        LIBRARY_OUTPUT_DIRECTORY "$<1:${KORA_PLUGIN_OUTPUT_DIR}/${library_dir}>"
    )
    if(KORA_PLUGIN_INSTALL_DIR)
        install(TARGETS ${target} LIBRARY DESTINATION ${KORA_PLUGIN_INSTALL_DIR}/${library_dir})
    endif()

    set(plugin_folder ${KORA_PLUGIN_OUTPUT_DIR}/${arg_ID})
    if(KORA_CHECK)
        _kora_find_tool(tool)
        _kora_use_tool(${target} "${tool}" ${plugin_folder})
    endif()
    foreach(test IN LISTS arg_TESTS)
        _kora_add_test(${target} ${test} ${plugin_folder})
    endforeach()
endfunction()

# Stores in the variable named result how to run the kora command on this machine: the target where it is built along,
# the program that is installed, or nothing.
function(_kora_find_tool result)
    if(TARGET kora)
        set(${result} kora PARENT_SCOPE)
        return()
    endif()
    set(beside_package "")
    if(NOT CMAKE_CROSSCOMPILING) # the package's own is for the other processor
        cmake_path(SET beside_package NORMALIZE "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../../../bin")
    endif()
    find_program(KORA_TOOL kora HINTS ${beside_package} ${beside_package}/../../bin DOC "The kora command of this machine")
    mark_as_advanced(KORA_TOOL)
    set(${result} "" PARENT_SCOPE)
    if(NOT KORA_TOOL)
        message(STATUS "The metadata is not checked: there is no kora command in PATH; KORA_TOOL may name one")
        return()
    endif()
    execute_process(COMMAND ${KORA_TOOL} check --help OUTPUT_VARIABLE help ERROR_QUIET)
    if(NOT help MATCHES "kora check")
        message(STATUS "The metadata is not checked: ${KORA_TOOL} does not run here, or is too old")
        return()
    endif()
    set(${result} ${KORA_TOOL} PARENT_SCOPE)
endfunction()

# Checks the metadata of the caller's arg_METADATA and arg_TRANSLATIONS before the target is compiled, and registers tests
# and bench of its plugin folder.
function(_kora_use_tool target tool plugin_folder)
    if(NOT tool)
        return()
    endif()
    set(translations ${arg_TRANSLATIONS})
    list(TRANSFORM translations PREPEND "--translation-file=")
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}_metadata.checked)
    add_custom_command(
        OUTPUT ${stamp}
        COMMAND ${tool} check --quiet ${arg_METADATA} ${translations}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS ${arg_METADATA} ${arg_TRANSLATIONS} ${tool}
        COMMENT "Checking ${arg_METADATA}"
        VERBATIM
    )
    add_custom_target(${target}_metadata DEPENDS ${stamp})
    add_dependencies(${target} ${target}_metadata)

    add_test(NAME ${target}_check COMMAND ${tool} check --source ${arg_METADATA} ${plugin_folder})
    if(NOT CMAKE_CROSSCOMPILING)
        add_test(NAME ${target}_load COMMAND ${tool} check --load ${plugin_folder})
    endif()
    add_custom_target(${target}_bench COMMAND ${tool} bench ${plugin_folder} USES_TERMINAL VERBATIM)
    add_dependencies(${target}_bench ${target})
    if(NOT TARGET bench)
        add_custom_target(bench DEPENDS ${target}_bench)
    endif()
endfunction()

# A test program of the target, from one source file.
function(_kora_add_test target source plugin_folder)
    if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
        return()
    endif()
    cmake_path(GET source STEM name)
    add_executable(${name} ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${name} PRIVATE KORA_TEST_PLUGIN_FOLDER="${plugin_folder}")
    target_link_libraries(${name} PRIVATE KRPluginLibrary::TestKit)
    add_dependencies(${name} ${target})
    add_test(NAME ${name} COMMAND ${name})
endfunction()

# Makes the paths in the named variables of the caller absolute; each must be an existing file.
function(_kora_make_absolute call)
    foreach(variable IN LISTS ARGN)
        set(files "")
        foreach(file IN LISTS ${variable})
            cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} NORMALIZE)
            if(NOT EXISTS ${file} OR IS_DIRECTORY ${file})
                message(FATAL_ERROR "${call}: there is no file ${file}")
            endif()
            list(APPEND files ${file})
        endforeach()
        set(${variable} "${files}" PARENT_SCOPE)
    endforeach()
endfunction()

# The id must be one UUID without braces and the one of the metadata: the loader compares the folder's name,
# which is made from it, with the metadata.
function(_kora_check_id call id metadata)
    string(REPEAT "[0-9a-fA-F]" 4 hex4)
    string(REPEAT "[0-9a-fA-F]" 12 hex12)
    if(NOT id MATCHES "^${hex4}${hex4}-${hex4}-${hex4}-${hex4}-${hex12}$" OR id MATCHES "^[0-]+$")
        message(FATAL_ERROR "${call}: ID must be one UUID without braces, not '${id}'")
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${metadata})
    file(READ ${metadata} json)
    string(JSON metadata_id ERROR_VARIABLE error GET "${json}" id)
    if(error)
        # A syntax error never gets as far as the check: point at its place as the check would.
        set(place ${metadata})
        if(error MATCHES "Line ([0-9]+), Column ([0-9]+)\n *([^\n]*)")
            set(place "${metadata}:${CMAKE_MATCH_1}:${CMAKE_MATCH_2}")
        endif()
        message(FATAL_ERROR "${place}: error: ${call}: cannot read \"id\" in ${metadata}: ${error}")
    endif()
    if(NOT id STREQUAL metadata_id)
        message(FATAL_ERROR "${call}: ID is '${id}' but \"id\" in ${metadata} is '${metadata_id}'")
    endif()
endfunction()

# Writes the Qt resource file for the caller's arg_ID, arg_TRANSLATIONS and arg_RESOURCES and stores its path in
# the variable named result: empty if there are no resources.
function(_kora_write_resource_list call result)
    set(entries "")
    foreach(file IN LISTS arg_TRANSLATIONS)
        cmake_path(GET file FILENAME name)
        if(NOT name MATCHES "^[a-z][a-z]-[A-Z][A-Z]\\.csv$")
            message(FATAL_ERROR "${call}: a translation file is named like 'it-IT.csv', not '${name}'")
        endif()
        string(APPEND entries "<file alias=\"translation/${name}\">${file}</file>\n")
    endforeach()
    foreach(file IN LISTS arg_RESOURCES)
        cmake_path(IS_PREFIX CMAKE_CURRENT_SOURCE_DIR ${file} is_below)
        if(NOT is_below)
            message(FATAL_ERROR "${call}: ${file} is outside the folder ${CMAKE_CURRENT_SOURCE_DIR}")
        endif()
        cmake_path(RELATIVE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE name)
        string(APPEND entries "<file alias=\"${name}\">${file}</file>\n")
    endforeach()

    set(${result} "" PARENT_SCOPE)
    if(entries)
        string(REPLACE "&" "&amp;" entries "${entries}")
        set(document "<RCC>\n<qresource prefix=\"/${arg_ID}/resources\">\n${entries}</qresource>\n</RCC>\n")
        set(path ${CMAKE_CURRENT_BINARY_DIR}/${target}.qrc)
        file(CONFIGURE OUTPUT ${path} CONTENT "@document@" @ONLY) # writes only what has changed
        set(${result} ${path} PARENT_SCOPE)
    endif()
endfunction()
