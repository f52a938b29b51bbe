# SPDX-License-Identifier: Apache-2.0
#
# Configures and builds the project in source, which finds the package below prefix, in binary.

file(REMOVE_RECURSE ${binary})
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${source} -B ${binary} -G ${generator} --no-warn-unused-cli
        -DCMAKE_CXX_COMPILER=${compiler}
        -DCMAKE_CXX_COMPILER_LAUNCHER=${launcher}
        -DCMAKE_CXX_FLAGS=${sanitize}
        -DCMAKE_PREFIX_PATH=${prefix}
        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
        -Dexpected_prefix=${prefix}
    COMMAND_ERROR_IS_FATAL ANY
)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${binary} COMMAND_ERROR_IS_FATAL ANY)
