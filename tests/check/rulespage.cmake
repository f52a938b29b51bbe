# SPDX-License-Identifier: Apache-2.0
execute_process(COMMAND ${emulator} ${kora} explain --format markdown OUTPUT_FILE ${work_dir}/rules.md COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${page} ${work_dir}/rules.md RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${page} is old; kora explain --format markdown > docs/rules.md")
endif()
