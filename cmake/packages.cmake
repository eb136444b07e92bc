# cpack: the Debian packages libzrcommon1, libzrcommon-dev and zrtool.
# SOURCE_DATE_EPOCH, where it is set, stands in every time stamp, so that two builds of a commit give
# the same bytes.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "libzrcommon maintainers <maintainers@zrcommon.example.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_NAME zrcommon)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_SET_DESTDIR ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development)
if(ZRCOMMON_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libzrcommon1)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "The shared object that components load, with logging, profile files, internet
 settings and fetches, network interfaces, wide strings, encodings, modules,
 paths, files, services and time.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzrcommon-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libzrcommon1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, the CMake package and the pkg-config file for compiling components.")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME zrtool)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "libzrcommon1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "The command line over the library: it
 fetches, logs, reads and writes profiles, and checks an installation.")

# The symbols file is the list of exports in the packaging system's form.
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/abi/names OUTPUT_VARIABLE exported_names
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "([^\n]+)\n" " \\1@Base 1.0.0\n" symbols "${exported_names}")
file(WRITE ${PROJECT_BINARY_DIR}/packaging/symbols "libzrcommon.so.1 libzrcommon1 #MINVER#\n${symbols}")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packaging/shlibs
  CONTENT "libzrcommon 1 libzrcommon1 (>= 1.0.0)\n")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packaging/triggers
  CONTENT "activate-noawait ldconfig\n")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/packaging/conffiles CONTENT "/etc/logrotate.d/zrcommon\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${PROJECT_BINARY_DIR}/packaging/symbols ${PROJECT_BINARY_DIR}/packaging/shlibs
  ${PROJECT_BINARY_DIR}/packaging/triggers ${PROJECT_BINARY_DIR}/packaging/conffiles)

# What every Debian package carries: its copyright and its changes.
set(changelog ${PROJECT_BINARY_DIR}/packaging/changelog)
file(CONFIGURE OUTPUT ${changelog} CONTENT "zrcommon (@PROJECT_VERSION@) stable; urgency=medium

  * Release @PROJECT_VERSION@; CHANGELOG.md tells what is new.

 -- @CPACK_PACKAGE_CONTACT@  Sun, 22 Nov 2026 00:00:00 +0000
" @ONLY)
execute_process(COMMAND gzip -9nkf ${changelog} COMMAND_ERROR_IS_FATAL ANY)
foreach(component library development tool)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES packaging/copyright ${changelog}.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
    COMPONENT ${component})
endforeach()
install(FILES packaging/libzrcommon1.lintian-overrides
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME libzrcommon1 COMPONENT library)

include(CPack)
