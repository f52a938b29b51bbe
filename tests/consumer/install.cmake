# SPDX-License-Identifier: Apache-2.0
#
# Installs build_dir below work_dir, moves the result to prefix and looks for paths that did not move along.

file(REMOVE_RECURSE ${prefix} ${work_dir}/staged)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${build_dir} --prefix ${work_dir}/staged COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${work_dir}/staged ${prefix})

file(GLOB_RECURSE texts ${prefix}/*.cmake ${prefix}/*.pc)
if(NOT texts)
    message(FATAL_ERROR "No package files below ${prefix}")
endif()
foreach(text IN LISTS texts)
    file(READ ${text} content)
    foreach(path IN ITEMS ${source_dir} ${build_dir})
        string(FIND "${content}" ${path} position)
        if(NOT position EQUAL -1)
            message(FATAL_ERROR "${text} names ${path}")
        endif()
    endforeach()
endforeach()
