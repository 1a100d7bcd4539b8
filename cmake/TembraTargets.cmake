# What every target of the project has in common.

# Warnings. The presets make them errors; a stranger's compiler may know more of them than ours do.
function(tembra_warnings name)
  target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wconversion)
  if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A unit includes sources: their unnamed namespaces are in no other unit, though they are in no main file.
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
  endif()
endfunction()

# The same, and sanitizers where the preset asks for them.
function(tembra_target name)
  tembra_warnings(${name})
  if(TEMBRA_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=${TEMBRA_SANITIZE} -fno-omit-frame-pointer
                                           -fno-sanitize-recover=all)
    target_link_options(${name} PRIVATE -fsanitize=${TEMBRA_SANITIZE})
  endif()
endfunction()

# A library is linked with all that it calls. What comes with the program is left open: a sanitizer's runtime, and the
# router's own functions where nobody said which libraries have them.
function(tembra_complete name)
  if(TEMBRA_SANITIZE OR NOT (TEMBRA_STAND_INS OR TEMBRA_PLATFORM_LIBRARIES))
    target_link_options(${name} PRIVATE -Wl,-z,undefs)
  else()
    target_link_options(${name} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

# Most of what compiling this target takes is in the headers that it uses: several files at a time. (A build that takes
# all of a target at once goes on doing so.)
function(tembra_batched name)
  if(NOT CMAKE_UNITY_BUILD)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()

# The same for a program that is never in a hurry: with sanitizers, optimising it costs more than it saves.
function(tembra_heavy_headers name)
  tembra_batched(${name})
  if(TEMBRA_SANITIZE)
    target_compile_options(${name} PRIVATE -O0)
  endif()
endfunction()

# Tests of this target run in namespaces of their own (the real addresses, the real database path, nothing touched).
# An emulator of the toolchain's starts both programs.
function(tembra_isolated_test name)
  set(isolate ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:tembra-isolate> ${CMAKE_CROSSCOMPILING_EMULATOR})
  set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${isolate}")
  add_dependencies(${name} tembra-isolate)
endfunction()
