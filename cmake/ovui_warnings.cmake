# Warnings for the project's own targets (never for third-party code).
function(ovui_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
endfunction()
