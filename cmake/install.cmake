# cmake --install: everything goes below the prefix and works there, wherever the prefix is.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zrcommon)
install(TARGETS zrcommon EXPORT zrcommonTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/zrcommon DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES packaging/zrcommon.supp DESTINATION ${CMAKE_INSTALL_DATADIR}/zrcommon)
install(EXPORT zrcommonTargets NAMESPACE zrcommon:: DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrcommonConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES packaging/zrcommonConfig.cmake ${PROJECT_BINARY_DIR}/zrcommonConfigVersion.cmake
  DESTINATION ${package_dir})
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(packaging/zrcommon.pc.in zrcommon.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zrcommon.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY examples/component examples/families DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
# The reference is there once scripts/checks/reference has made it.
set(reference ${PROJECT_SOURCE_DIR}/build/reference)
install(DIRECTORY ${reference}/html DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)
install(DIRECTORY ${reference}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR} OPTIONAL)

if(TARGET zrtool)
  file(RELATIVE_PATH lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set(ZRCOMMON_TOOL_RPATH "\$ORIGIN/${lib_from_bin}" CACHE STRING
    "Where the installed zrtool looks for the library first; empty for a system directory")
  set_target_properties(zrtool PROPERTIES INSTALL_RPATH "${ZRCOMMON_TOOL_RPATH}")
  install(TARGETS zrtool DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES tools/zrtool.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES tools/zrtool.bash-completion RENAME zrtool
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES tools/zrtool.zsh-completion RENAME _zrtool
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

if(TARGET inet)
  install(DIRECTORY examples/inet DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
  foreach(module inet inet_scripted)
    install(FILES $<TARGET_FILE:${module}> RENAME ${module}.so
      DESTINATION ${CMAKE_INSTALL_LIBDIR}/zrcommon)
  endforeach()
endif()
