# SPDX-License-Identifier: Apache-2.0
#
# The library exports its own names only, and is hardened: no entry of its tables can be rewritten, no code either, the
# stack is guarded and holds no code.

execute_process(COMMAND ${nm} -DC --defined-only ${library} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
list(TRANSFORM symbols REPLACE "^[0-9a-f]+ . " "")
set(own "KORA::|koraFormatLogMessage\\(")
set(described "(vtable|typeinfo|typeinfo name|VTT|guard variable) for |(non-)?virtual thunk to ")
set(result_type "[a-z]+ ") # of instances of function templates
set(foreign "${symbols}")
list(FILTER foreign EXCLUDE REGEX "^(${described}|${result_type})?(${own})")
if(foreign OR NOT symbols MATCHES "koraFormatLogMessage")
    list(JOIN foreign "\n  " foreign)
    message(FATAL_ERROR "Foreign symbols in ${library}:\n  ${foreign}")
endif()

execute_process(COMMAND ${readelf} -dlW ${library} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
foreach(wanted IN ITEMS "GNU_RELRO" "BIND_NOW|Flags: NOW")
    if(NOT headers MATCHES "${wanted}")
        message(FATAL_ERROR "${library} lacks ${wanted}")
    endif()
endforeach()
foreach(unwanted IN ITEMS "TEXTREL" "GNU_STACK[^\n]*RWE")
    if(headers MATCHES "${unwanted}")
        message(FATAL_ERROR "${library} has ${unwanted}")
    endif()
endforeach()

execute_process(COMMAND ${nm} -D --undefined-only ${library} OUTPUT_VARIABLE imports COMMAND_ERROR_IS_FATAL ANY)
if(NOT imports MATCHES "__stack_chk_fail")
    message(FATAL_ERROR "${library} is built without stack protector")
endif()
