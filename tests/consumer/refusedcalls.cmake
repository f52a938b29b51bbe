# SPDX-License-Identifier: Apache-2.0
#
# Wrong calls of kora_add_widget_library() end with a message that says what is wrong. The script runs itself once per
# call, with the arguments in "call".

if(DEFINED call)
    include(${source_dir}/cmake/KoraWidgetLibrary.cmake)
    kora_add_widget_library(lamp ${call})
    return()
endif()

set(id 2b1f6d0e-8d0a-4f0e-9c55-0f0d5f2c7a11)
set(other_id 2b1f6d0e-8d0a-4f0e-9c55-0f0d5f2c7a12)
set(author ${source_dir}/tests/consumer/author)
set(metadata METADATA ${author}/lamp.json)
set(sources SOURCES ${author}/lamp.cpp)

function(expect_refusal message)
    execute_process(
        COMMAND ${CMAKE_COMMAND} "-Dcall=${ARGN}" -Dsource_dir=${source_dir} -P ${CMAKE_CURRENT_FUNCTION_LIST_FILE}
        RESULT_VARIABLE result ERROR_VARIABLE error OUTPUT_QUIET
    )
    string(REGEX REPLACE "[ \n]+" " " error "${error}")
    string(FIND "${error}" "kora_add_widget_library(lamp): ${message}" position)
    if(result EQUAL 0 OR position EQUAL -1)
        message(SEND_ERROR "Expected '${message}' for '${ARGN}', got: ${error}")
    endif()
endfunction()

expect_refusal("ID is missing" ${metadata} ${sources})
expect_refusal("METADATA is missing" ID ${id} ${sources})
expect_refusal("SOURCES is missing" ID ${id} ${metadata})
expect_refusal("unknown arguments: ${other_id}" ID ${id} ${other_id} ${metadata} ${sources})
expect_refusal("ID must be one UUID without braces, not '{${id}}'" ID {${id}} ${metadata} ${sources})
expect_refusal("ID must be one UUID without braces, not '${id}/../x'" ID ${id}/../x ${metadata} ${sources})
expect_refusal("ID is '${other_id}' but \"id\" in" ID ${other_id} ${metadata} ${sources})
expect_refusal("cannot read \"id\" in" ID ${id} METADATA ${author}/it-IT.csv ${sources})
expect_refusal("there is no file ${author}/none.json" ID ${id} METADATA ${author}/none.json ${sources})
expect_refusal("a translation file is named like 'it-IT.csv', not 'lamp.cpp'"
    ID ${id} ${metadata} ${sources} TRANSLATIONS ${author}/lamp.cpp)
expect_refusal("${source_dir}/LICENSE is outside the folder"
    ID ${id} ${metadata} ${sources} RESOURCES ${source_dir}/LICENSE)
