target_sources(zrcommon PRIVATE abi/dlopen_note.cpp)

# The library's calls to its own functions are bound inside it: a host that defines a Trim or
# CopyFile of its own does not redirect them. The exported variables stay shared with the host.
target_compile_options(zrcommon PRIVATE -fno-semantic-interposition)
target_link_options(zrcommon PRIVATE
  -Wl,-Bsymbolic-functions -Wl,--enable-new-dtags
  -Wl,--version-script=${PROJECT_SOURCE_DIR}/abi/zrcommon.map -Wl,--no-undefined-version
  ${PROJECT_SOURCE_DIR}/abi/aliases.ld)
set_target_properties(zrcommon PROPERTIES LINK_DEPENDS
  "${PROJECT_SOURCE_DIR}/abi/zrcommon.map;${PROJECT_SOURCE_DIR}/abi/aliases.ld")

# The library needs RPATH and RUNPATH. No linker writes both, so RPATH is added after linking.
add_executable(add_rpath abi/add_rpath.cpp)
target_link_libraries(add_rpath PRIVATE zrcommon_flags)
add_dependencies(zrcommon add_rpath)
add_custom_command(TARGET zrcommon POST_BUILD COMMAND add_rpath $<TARGET_FILE:zrcommon> VERBATIM)
