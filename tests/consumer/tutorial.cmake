# SPDX-License-Identifier: Apache-2.0
#
# Does what docs/tutorial.md says, in the empty folder work_dir and with the package below prefix: runs its blocks of
# commands and applies its changes. A command after "! " has to fail.

file(REMOVE_RECURSE ${work_dir})
file(MAKE_DIRECTORY ${work_dir})
file(READ ${tutorial} text)
string(REPLACE ";" "<semicolon>" text "${text}")
string(REGEX MATCHALL "\n```(sh|diff)\n[^`]*\n```\n" blocks "\n${text}\n")
list(LENGTH blocks count)
if(count LESS 12)
    message(FATAL_ERROR "${tutorial} has only ${count} blocks of commands and changes")
endif()

set(script "set -eux\n")
foreach(block IN LISTS blocks)
    string(REGEX REPLACE "^\n```(sh|diff)\n(.*\n)```\n$" "\\2" content "${block}")
    string(REPLACE "<semicolon>" ";" content "${content}")
    if(block MATCHES "^\n```diff")
        string(APPEND script "patch -p1 --forward <<'END_OF_CHANGE'\n${content}END_OF_CHANGE\n")
    else()
        string(REGEX REPLACE "(^|\n)! ([^\n]*)" "\\1if \\2; then echo 'this should have failed'; exit 1; fi" content "${content}")
        string(APPEND script "${content}")
    endif()
endforeach()
file(WRITE ${work_dir}/tutorial.sh "${script}")

set(ENV{PATH} "${prefix}/bin:$ENV{PATH}")
set(ENV{CMAKE_BUILD_PARALLEL_LEVEL} 2)
set(ENV{CMAKE_CXX_COMPILER_LAUNCHER} "${launcher}")
set(ENV{CXX} ${compiler})
execute_process(COMMAND bash tutorial.sh WORKING_DIRECTORY ${work_dir} COMMAND_ECHO NONE COMMAND_ERROR_IS_FATAL ANY)
