# Warnings are errors in our own targets.
function(optdesk_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror -Wno-deprecated-declarations)
endfunction()

# Re-runs moc when the globbed file list changes: a header added to a folder is
# newer than the autogen stamp, so its Q_OBJECT is seen without a clean build.
function(optdesk_autogen_follows target)
  set_property(TARGET ${target} APPEND PROPERTY AUTOGEN_TARGET_DEPENDS ${ARGN})
endfunction()
