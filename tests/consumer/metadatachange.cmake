# SPDX-License-Identifier: Apache-2.0
#
# Building again after a change of the JSON file alone gives a library with the new metadata. Works on the copy of the
# author's project below work_dir.

set(source ${work_dir}/changing)
set(binary ${work_dir}/changing-build)
file(REMOVE_RECURSE ${source})
file(COPY ${author}/ DESTINATION ${source})
include(${CMAKE_CURRENT_LIST_DIR}/buildproject.cmake)

execute_process(COMMAND ${CMAKE_COMMAND} -E sleep 1.1) # Make knows whole seconds
file(READ ${source}/lamp.json json)
string(REPLACE "The author of the lamp" "Somebody else" json "${json}")
file(WRITE ${source}/lamp.json "${json}")
execute_process(COMMAND ${CMAKE_COMMAND} --build ${binary} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE library ${binary}/plugins/*.so)
file(STRINGS "${library}" found REGEX "Somebody else")
if(NOT found)
    message(FATAL_ERROR "${library} has the metadata from before the change")
endif()
