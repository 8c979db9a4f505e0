# Installs libtov for other projects: the library, its headers below include/Tov, a CMake
# package (find_package(tov) gives tov::tov) and a pkg-config file (tov.pc). JUCE's headers
# stay where the juce-modules-source package put them; both files point there.
include(CMakePackageConfigHelpers)

install(TARGETS tov EXPORT tovTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Libraries/Tov
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

set(TOV_CMAKE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/tov)
install(EXPORT tovTargets NAMESPACE tov:: DESTINATION ${TOV_CMAKE_PACKAGE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/tovConfig.cmake.in
  ${PROJECT_BINARY_DIR}/tovConfig.cmake
  INSTALL_DESTINATION ${TOV_CMAKE_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tovConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tovConfig.cmake ${PROJECT_BINARY_DIR}/tovConfigVersion.cmake
  DESTINATION ${TOV_CMAKE_PACKAGE_DIR})

list(TRANSFORM TOV_PUBLIC_DEFINITIONS PREPEND "-D" OUTPUT_VARIABLE TOV_PKGCONFIG_DEFINITIONS)
list(JOIN TOV_PKGCONFIG_DEFINITIONS " " TOV_PKGCONFIG_DEFINITIONS)
list(TRANSFORM TOV_JUCE_CORE_INCLUDES PREPEND "-I" OUTPUT_VARIABLE TOV_PKGCONFIG_INCLUDES)
list(JOIN TOV_PKGCONFIG_INCLUDES " " TOV_PKGCONFIG_INCLUDES)
file(RELATIVE_PATH TOV_PKGCONFIG_PREFIX_FROM_FILE
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/tov.pc.in ${PROJECT_BINARY_DIR}/tov.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tov.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
