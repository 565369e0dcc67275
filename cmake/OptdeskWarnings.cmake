# Warnings are errors in our own targets.
function(optdesk_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror -Wno-deprecated-declarations)
endfunction()
