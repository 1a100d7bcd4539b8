# What every target of the project has in common.

# Warnings are errors; sanitizers where the preset asks for them.
function(tembra_target name)
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Werror)
  if(TEMBRA_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=${TEMBRA_SANITIZE} -fno-omit-frame-pointer
                                           -fno-sanitize-recover=all)
    target_link_options(${name} PRIVATE -fsanitize=${TEMBRA_SANITIZE})
  endif()
endfunction()

# Tests of this target run in namespaces of their own (the real addresses, the real database path, nothing touched).
function(tembra_isolated_test name)
  set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "$<TARGET_FILE:tembra-isolate>")
  add_dependencies(${name} tembra-isolate)
endfunction()
