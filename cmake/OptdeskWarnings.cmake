# Warnings are errors in our own targets.
function(optdesk_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror -Wno-deprecated-declarations)
endfunction()

# Re-runs moc when the globbed file list changes. Ninja's moc stamp only knows
# the headers it saw before, so a header added to a folder would stay unseen:
# when the list differs from the last configure, the stamp is removed.
function(optdesk_autogen_follows target)
  set(list_file ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen_sources.txt)
  string(JOIN "\n" content ${ARGN})
  set(old "")
  if(EXISTS ${list_file})
    file(READ ${list_file} old)
  endif()
  if(NOT old STREQUAL content)
    file(WRITE ${list_file} "${content}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
  endif()
endfunction()
