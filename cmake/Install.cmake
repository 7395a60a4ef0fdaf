# What `cmake --install` puts where, and the packages that CPack makes of it. Every folder is relative to the prefix and
# every file finds the others from where it stands, so that an installed tree may be moved.
include(CMakePackageConfigHelpers)

set(TESK_LIBRARIES qrnfloat quarnc tesk2mp)
set_target_properties(${TESK_LIBRARIES} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})

install(TARGETS ${TESK_LIBRARIES} EXPORT tesk2mp
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT dev
  ARCHIVE COMPONENT dev)
install(DIRECTORY include/quarn include/tesk2mp TYPE INCLUDE COMPONENT dev)
install(FILES LICENSE README.md CHANGELOG.md TYPE DOC COMPONENT library)

# find_package(tesk2mp) gives tesk2mp::tesk2mp, and the host's tesk2mp::qrnfloat and tesk2mp::quarnc.
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/tesk2mp)
install(EXPORT tesk2mp NAMESPACE tesk2mp:: FILE tesk2mpTargets.cmake DESTINATION ${package} COMPONENT dev)
configure_package_config_file(cmake/tesk2mpConfig.cmake.in tesk2mpConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(tesk2mpConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tesk2mpConfig.cmake ${PROJECT_BINARY_DIR}/tesk2mpConfigVersion.cmake
  DESTINATION ${package} COMPONENT dev)

# pkg-config tesk2mp
set(TESK_PC_CFLAGS "")
if(QUARN_LIMB_BITS)
  set(TESK_PC_CFLAGS " -DQUARN_LIMB_BITS=${QUARN_LIMB_BITS}")
endif()
file(RELATIVE_PATH TESK_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/tesk2mp.pc.in tesk2mp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tesk2mp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

if(TARGET quarn)
  install(TARGETS quarn RUNTIME COMPONENT console)
  tesk_run_path(quarn . ${CMAKE_INSTALL_BINDIR} console)
  install(PROGRAMS python/tesk2mp/verify_certificate.py DESTINATION ${CMAKE_INSTALL_DATADIR}/tesk2mp COMPONENT console)
  if(NOT CMAKE_CROSSCOMPILING)
    install(FILES ${PROJECT_BINARY_DIR}/quarn.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT console)
    install(FILES ${PROJECT_BINARY_DIR}/quarn.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
      RENAME quarn COMPONENT console)
  endif()
endif()

# Packages: `cpack` in the build folder.
set(CPACK_PACKAGE_NAME tesk2mp)
set(CPACK_PACKAGE_VENDOR "Tesk MP")
set(CPACK_PACKAGE_CONTACT "Tesk MP <tesk2mp@localhost>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

  set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libtesk2mp${PROJECT_VERSION_MAJOR})
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
  set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}: shared libraries")
  set(CPACK_DEBIAN_DEV_PACKAGE_NAME libtesk2mp-dev)
  set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
  set(CPACK_COMPONENT_DEV_DESCRIPTION "${PROJECT_DESCRIPTION}: headers for C++")
  set(CPACK_COMPONENT_DEV_DEPENDS library)
  set(CPACK_DEBIAN_CONSOLE_PACKAGE_NAME quarn)
  set(CPACK_DEBIAN_CONSOLE_PACKAGE_SECTION math)
  set(CPACK_DEBIAN_CONSOLE_PACKAGE_RECOMMENDS gnuplot-nox)
  set(CPACK_COMPONENT_CONSOLE_DESCRIPTION "${PROJECT_DESCRIPTION}: console program")
  set(CPACK_COMPONENT_CONSOLE_DEPENDS library)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-tesk2mp)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${TESK_PYTHON_DEPENDS}")
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION "${PROJECT_DESCRIPTION}: Python module")
  set(CPACK_COMPONENT_PYTHON_DEPENDS library)
endif()
get_cmake_property(CPACK_COMPONENTS_ALL COMPONENTS)
list(REMOVE_ITEM CPACK_COMPONENTS_ALL wheel)
include(CPack)
