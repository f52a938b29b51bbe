# SPDX-License-Identifier: Apache-2.0
#
# Makes the packages that config describes in work_dir, looks at what each says and holds, and unpacks all into root.

file(REMOVE_RECURSE ${work_dir} ${root})
file(MAKE_DIRECTORY ${root})
execute_process(COMMAND ${CMAKE_CPACK_COMMAND} --config ${config} -B ${work_dir} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

# check(<package> <must hold> <must not hold>): regular expressions for the paths of its files
function(check package expected unexpected)
    file(GLOB deb ${work_dir}/${package}_${version}_*.deb)
    list(LENGTH deb count)
    if(NOT count EQUAL 1)
        message(FATAL_ERROR "${package}: one package is expected, not '${deb}'")
    endif()
    execute_process(COMMAND dpkg-deb --contents ${deb} OUTPUT_VARIABLE contents COMMAND_ERROR_IS_FATAL ANY)
    foreach(path IN LISTS expected)
        if(NOT contents MATCHES "${path}")
            message(SEND_ERROR "${package} lacks ${path}:\n${contents}")
        endif()
    endforeach()
    foreach(path IN LISTS unexpected)
        if(contents MATCHES "${path}")
            message(SEND_ERROR "${package} holds ${CMAKE_MATCH_0}")
        endif()
    endforeach()
    execute_process(COMMAND dpkg-deb --extract ${deb} ${root} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

check(libkrpluginlibrary1
    "/usr/lib/.*libKRPluginLibrary\\.so\\.1 ;/usr/share/doc/libkrpluginlibrary1/copyright"
    "include;cmake;/bin/;plugins;libKRPluginLibrary\\.so ")
check(libkrpluginlibrary-dev
    "libKRPluginLibrary\\.so ;/usr/include/kora/kora\\.h;KRPluginLibraryConfig\\.cmake;KRPluginLibrary\\.pc"
    "libKRPluginLibrary\\.so\\.1 ;/bin/;plugins")
check(kora-tools "/usr/bin/kora" "include;libKRPluginLibrary;plugins")

# Of a build with debug information the symbols are in packages of their own.
file(GLOB symbols ${work_dir}/*-dbgsym_${version}_*.ddeb)
list(LENGTH symbols count)
if(NOT count EQUAL 2)
    message(SEND_ERROR "Debug symbols of the library and the command are expected, not '${symbols}'")
endif()
