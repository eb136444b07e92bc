target_sources(zrcommon PRIVATE abi/dlopen_note.cpp)

# The library's own calls are bound inside it, so that a host with a Trim or CopyFile of its own
# changes nothing, while the exported variables stay shared with the host.
target_compile_options(zrcommon PRIVATE -fno-semantic-interposition)
target_link_options(zrcommon PRIVATE
  -Wl,-Bsymbolic-functions -Wl,--enable-new-dtags
  -Wl,--version-script=${PROJECT_SOURCE_DIR}/abi/zrcommon.map -Wl,--no-undefined-version
  ${PROJECT_SOURCE_DIR}/abi/aliases.ld)
set_target_properties(zrcommon PROPERTIES LINK_DEPENDS
  "${PROJECT_SOURCE_DIR}/abi/zrcommon.map;${PROJECT_SOURCE_DIR}/abi/aliases.ld")

# RPATH beside RUNPATH: no linker writes both, so the second one goes in after linking.
add_executable(add_rpath abi/add_rpath.cpp)
target_link_libraries(add_rpath PRIVATE zrcommon_flags)
add_dependencies(zrcommon add_rpath)
add_custom_command(TARGET zrcommon POST_BUILD COMMAND add_rpath $<TARGET_FILE:zrcommon> VERBATIM)
