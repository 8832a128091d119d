# Install rules: both libraries, the headers, and what lets others find them (pkg-config and CMake).
include(CMakePackageConfigHelpers)
set(CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/orvcv)

# The libraries lie side by side wherever they are put.
set_target_properties(orvcv PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS orvcv orvcore EXPORT orvcvTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)

install(EXPORT orvcvTargets NAMESPACE orvcv:: DESTINATION ${CMAKE_DIR})
configure_package_config_file(cmake/orvcvConfig.cmake.in ${PROJECT_BINARY_DIR}/orvcvConfig.cmake
  INSTALL_DESTINATION ${CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orvcvConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orvcvConfig.cmake ${PROJECT_BINARY_DIR}/orvcvConfigVersion.cmake
  DESTINATION ${CMAKE_DIR})

# The .pc file tells the prefix relative to itself, so that the installed tree can be moved.
file(RELATIVE_PATH PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/orvcv.pc.in ${PROJECT_BINARY_DIR}/orvcv.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvcv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
