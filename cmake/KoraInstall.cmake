# SPDX-License-Identifier: Apache-2.0
#
# What `cmake --install` puts under the prefix. Nothing in it names the prefix: the tree may be moved as a whole.
# Widget libraries and the kora command install themselves. What names no component is for development.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KRPluginLibrary)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(generated_dir ${PROJECT_BINARY_DIR}/package)

# The library, its headers, and the target that projects link
install(TARGETS KRPluginLibrary TestKit
    EXPORT KRPluginLibraryTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
)
install(EXPORT KRPluginLibraryTargets NAMESPACE KRPluginLibrary:: DESTINATION ${package_dir})

# find_package(KRPluginLibrary)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/KRPluginLibraryConfig.cmake.in
    ${generated_dir}/KRPluginLibraryConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO
)
write_basic_package_version_file(
    ${generated_dir}/KRPluginLibraryConfigVersion.cmake
    COMPATIBILITY SameMajorVersion
)
install(FILES
    ${generated_dir}/KRPluginLibraryConfig.cmake
    ${generated_dir}/KRPluginLibraryConfigVersion.cmake
    ${PROJECT_SOURCE_DIR}/cmake/KoraWidgetLibrary.cmake
    DESTINATION ${package_dir}
)

# Toolchain files for building for panels
install(DIRECTORY ${PROJECT_SOURCE_DIR}/cmake/toolchains
    DESTINATION ${CMAKE_INSTALL_DATADIR}/kora
    USE_SOURCE_PERMISSIONS
)

# pkg-config
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE libdir)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE includedir)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE pc_to_prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/KRPluginLibrary.pc.in ${generated_dir}/KRPluginLibrary.pc @ONLY)
install(FILES ${generated_dir}/KRPluginLibrary.pc DESTINATION ${pkgconfig_dir})

# The command finds the library beside it
if(TARGET kora AND NOT KORA_DEBIAN_PATHS)
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR} OUTPUT_VARIABLE bin_to_lib)
    set_target_properties(kora PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
endif()

# Editors complete and check metadata files by it
install(FILES ${PROJECT_SOURCE_DIR}/sdk/schema/widget-library.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/kora)

install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL
    FILES_MATCHING PATTERN *.md PATTERN *.png PATTERN api EXCLUDE)

include(cmake/KoraPackages.cmake)
