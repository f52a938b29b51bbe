# SPDX-License-Identifier: Apache-2.0
#
# The binary interface of library, as far as public headers declare it, still offers all that stands in released. More
# functions and classes are welcome. With update, released is written instead.

set(header_dir ${work_dir}/headers)
file(REMOVE_RECURSE ${header_dir})
foreach(header IN LISTS headers) # abidw wants a folder with nothing but public headers
    cmake_path(RELATIVE_PATH header BASE_DIRECTORY ${source_dir} OUTPUT_VARIABLE name)
    configure_file(${header} ${header_dir}/${name} COPYONLY)
endforeach()

# No path of this machine goes into the file.
set(present ${work_dir}/present.abi)
execute_process(
    COMMAND ${abidw} --headers-dir ${header_dir} --drop-private-types
        --suppressions ${CMAKE_CURRENT_LIST_DIR}/foreign.suppressions
        --exported-interfaces-only --drop-undefined-syms --type-id-style hash
        --no-elf-needed --no-show-locs --no-comp-dir-path --no-corpus-path
        --out-file ${present} ${library}
    COMMAND_ERROR_IS_FATAL ANY
)
if(update)
    configure_file(${present} ${released} COPYONLY)
    return()
endif()

execute_process(
    COMMAND ${abidiff} --no-added-syms --suppressions ${CMAKE_CURRENT_LIST_DIR}/compatible.suppressions
        ${released} ${present}
    RESULT_VARIABLE result OUTPUT_VARIABLE report ERROR_VARIABLE report
)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "What was built against the released library would not work any more:\n${report}")
endif()
