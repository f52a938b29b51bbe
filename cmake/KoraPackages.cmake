# SPDX-License-Identifier: Apache-2.0
#
# Debian packages of what KoraInstall.cmake installs, one per component; `scripts/packages` makes them.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME krpluginlibrary)
set(CPACK_PACKAGE_VENDOR "The ${PROJECT_NAME} developers")
set(CPACK_PACKAGE_CONTACT "The ${PROJECT_NAME} developers <packages@${CPACK_PACKAGE_NAME}.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES OFF) # stripping for the debug symbols' packages does it
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET kora)
    list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(debian_architecture_x86_64 amd64)
set(debian_architecture_aarch64 arm64)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${debian_architecture_${CMAKE_SYSTEM_PROCESSOR}})

# The tools of the target's architecture
set(CPACK_OBJCOPY_EXECUTABLE ${CMAKE_OBJCOPY})
set(CPACK_OBJDUMP_EXECUTABLE ${CMAKE_OBJDUMP})
set(CPACK_READELF_EXECUTABLE ${CMAKE_READELF})

# The versions are those of Debian 12: what is built there is known to need no more. They are written down because
# the dependencies of a package for another architecture cannot be looked up on the machine that builds it.
set(qt_version 5.15.2)
set(runtime_package lib${CPACK_PACKAGE_NAME}${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS
    "libc6 (>= 2.34), libgcc-s1 (>= 3.0), libstdc++6 (>= 11), libqt5core5a (>= ${qt_version}), libqt5gui5 (>= ${qt_version}) | libqt5gui5-gles (>= ${qt_version}), libqt5widgets5 (>= ${qt_version})")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION}: the library that hosts link.")
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME lib${CPACK_PACKAGE_NAME}-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION}), qtbase5-dev (>= ${qt_version})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "kora-tools (= ${PROJECT_VERSION}), cmake (>= 3.25)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION}: headers, CMake package and documentation.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME kora-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION}), ${CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS}, libarchive13 (>= 3.6)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "fonts-roboto-unhinted, libqt5svg5")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${PROJECT_DESCRIPTION}: the kora command.")
set(CPACK_DEBIAN_TOOLS_DEBUGINFO_PACKAGE ON)

# What Debian asks of every package; a plain installation has the licence once, beside the documentation.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    install(FILES LICENSE RENAME copyright COMPONENT ${component} EXCLUDE_FROM_ALL
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
endforeach()

include(CPack)
