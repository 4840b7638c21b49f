# The installed package: headers, library, resources, find_package(Tov310) and pkg-config.
include(CMakePackageConfigHelpers)

set(tov_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Tov310")

install(TARGETS Tov310Core EXPORT Tov310Targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY include/tov310 DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
set(tov_resource_dir "${CMAKE_INSTALL_DATADIR}/tov310/res")
install(DIRECTORY res/ DESTINATION "${tov_resource_dir}")
if(TARGET Tov310)
    install(TARGETS Tov310 EXPORT Tov310UiTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
    install(EXPORT Tov310UiTargets NAMESPACE Tov310:: DESTINATION "${tov_package_dir}")
endif()
install(EXPORT Tov310Targets NAMESPACE Tov310:: DESTINATION "${tov_package_dir}")

configure_package_config_file(cmake/Tov310Config.cmake.in "${PROJECT_BINARY_DIR}/Tov310Config.cmake"
    INSTALL_DESTINATION "${tov_package_dir}"
    PATH_VARS tov_resource_dir)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/Tov310ConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/Tov310Config.cmake"
    "${PROJECT_BINARY_DIR}/Tov310ConfigVersion.cmake"
    cmake/TovResources.cmake
    cmake/TovEmbedResources.cmake
    DESTINATION "${tov_package_dir}")

file(RELATIVE_PATH TOV_PC_TO_INCLUDE
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
set(tov_packages tov310-core)
if(TARGET Tov310)
    list(APPEND tov_packages tov310)
endif()
foreach(package IN LISTS tov_packages)
    configure_file("cmake/${package}.pc.in" "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/tov310")
