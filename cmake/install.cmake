# cmake --install: the library (component library), what compiling against it needs (development),
# and zrtool (tool).
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zrcommon)
install(TARGETS zrcommon EXPORT zrcommonTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(FILES packaging/zrcommon.logrotate DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/logrotate.d
  RENAME zrcommon COMPONENT library)

install(DIRECTORY include/zrcommon DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(FILES packaging/zrcommon.supp DESTINATION ${CMAKE_INSTALL_DATADIR}/zrcommon
  COMPONENT development)
install(EXPORT zrcommonTargets NAMESPACE zrcommon:: DESTINATION ${package_dir} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrcommonConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES packaging/zrcommonConfig.cmake ${PROJECT_BINARY_DIR}/zrcommonConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)
configure_file(packaging/zrcommon.pc.in zrcommon.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zrcommon.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# The reference is there once scripts/reference has made it.
set(reference ${PROJECT_SOURCE_DIR}/build/reference)
install(DIRECTORY ${reference}/html DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libzrcommon-dev
  COMPONENT development OPTIONAL)
install(DIRECTORY ${reference}/man/man3 DESTINATION ${CMAKE_INSTALL_MANDIR}
  COMPONENT development OPTIONAL)

if(ZRCOMMON_BUILD_TOOLS)
  install(TARGETS zrtool DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  set(manual ${PROJECT_BINARY_DIR}/packaging/zrtool.1)
  configure_file(tools/zrtool.1 ${manual} COPYONLY)
  execute_process(COMMAND gzip -9nkf ${manual} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${manual}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES tools/zrtool.bash-completion RENAME zrtool
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
endif()
