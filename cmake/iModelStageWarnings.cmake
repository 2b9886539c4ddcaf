# Warning flags for the project's own targets.
function(imodelstage_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(IMODELSTAGE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
