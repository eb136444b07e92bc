# What everything here is compiled with: the warnings, and the hardening that a distribution uses
# for a security product. Link targets to zrcommon_flags to get them.
add_library(zrcommon_flags INTERFACE)
target_compile_options(zrcommon_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${ZRCOMMON_WERROR}>:-Werror>
  -fstack-protector-strong -fstack-clash-protection -fcf-protection
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}=/build)
target_link_options(zrcommon_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack,--as-needed)

if(ZRCOMMON_SANITIZE)
  add_compile_options(-fsanitize=${ZRCOMMON_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZRCOMMON_SANITIZE})
else()
  # The sanitizers bring their own runtime, which must stay undefined, and replace the fortified calls.
  target_compile_definitions(zrcommon_flags INTERFACE _FORTIFY_SOURCE=2)
  target_link_options(zrcommon_flags INTERFACE -Wl,-z,defs)
endif()

# zr_vectorise(SOURCE...): loops in these files of the library are written for the vectoriser, which
# does more at this level than at the build type's.
function(zr_vectorise)
  set_source_files_properties(${ARGN} TARGET_DIRECTORY zrcommon
    PROPERTIES COMPILE_OPTIONS "$<$<NOT:$<CONFIG:Debug>>:-O3>")
endfunction()
