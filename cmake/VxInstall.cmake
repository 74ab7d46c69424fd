# Installation: the shared libraries and the command-line program, the headers under include/vxsvg/
# with their folders, a CMake package (find_package(vxsvg) gives vxsvg::vxsvg and the other
# targets) and a pkg-config file. Targets built after the core add themselves to VXSVG_EXPORTED.
include(CMakePackageConfigHelpers)

set(VXSVG_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/vxsvg)
configure_file(${PROJECT_SOURCE_DIR}/cmake/VXSVGVersion.h.in ${PROJECT_BINARY_DIR}/include/vxsvg/VXSVGVersion.h @ONLY)

install(TARGETS ${VXSVG_EXPORTED} EXPORT vxsvgTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET vxsvg-cli)
  set_target_properties(vxsvg-cli PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS vxsvg-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vxsvg FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_SOURCE_DIR}/include/vxsvg/VXSVG.h ${PROJECT_BINARY_DIR}/include/vxsvg/VXSVGVersion.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vxsvg)

install(EXPORT vxsvgTargets NAMESPACE vxsvg:: DESTINATION ${VXSVG_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/vxsvgConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/vxsvgConfig.cmake INSTALL_DESTINATION ${VXSVG_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vxsvgConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vxsvgConfig.cmake ${PROJECT_BINARY_DIR}/vxsvgConfigVersion.cmake
        DESTINATION ${VXSVG_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/vxsvg.pc.in ${PROJECT_BINARY_DIR}/vxsvg.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vxsvg.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
