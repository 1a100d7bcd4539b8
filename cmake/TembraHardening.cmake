# What makes a fault hard to use, in everything that is installed. Each measure is taken where the compiler knows it.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

set(tembra_hardening -fstack-protector-strong)
foreach(flag -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "TEMBRA_HAS${flag}" known)
  set(CMAKE_REQUIRED_FLAGS ${flag})
  check_cxx_source_compiles("int main() {}" ${known} FAIL_REGEX "warning")  # a flag that is ignored is not known
  if(${known})
    list(APPEND tembra_hardening ${flag})
  endif()
endforeach()

# Some linkers refuse relocations in the program text without being told, and do not know the option.
set(tembra_hardened_link -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
unset(CMAKE_REQUIRED_FLAGS)
set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,-z,text)
check_cxx_source_compiles("int main() {}" TEMBRA_LINKER_HAS_TEXT FAIL_REGEX "warning")
unset(CMAKE_REQUIRED_LINK_OPTIONS)
if(TEMBRA_LINKER_HAS_TEXT)
  list(APPEND tembra_hardened_link -Wl,-z,text)
endif()

# Level 3 also checks sizes that are known at run time only. Elsewhere the C library would warn of it.
set(CMAKE_REQUIRED_FLAGS "-O1 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
check_cxx_source_compiles("
  #include <cstring>
  #if __USE_FORTIFY_LEVEL < 3
  #error not known
  #endif
  int main() {}" TEMBRA_HAS_FORTIFY_3 FAIL_REGEX "warning")
unset(CMAKE_REQUIRED_FLAGS)
set(tembra_fortify_level 2)
if(TEMBRA_HAS_FORTIFY_3)
  set(tembra_fortify_level 3)
endif()

# No object tells in which folder it was built: the same sources give the same bytes.
check_cxx_compiler_flag(-ffile-prefix-map=a=b TEMBRA_HAS_FILE_PREFIX_MAP)
if(TEMBRA_HAS_FILE_PREFIX_MAP)
  list(APPEND tembra_hardening -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
endif()

# tembra_shipped(NAME [IN_LIBRARY] [NOT_SANITIZED]): a target that is installed, or a part of one; IN_LIBRARY: a part of
# the library. Sanitizers have stronger checks of their own. A shared library exports what its folder's exported.map says.
function(tembra_shipped name)
  if("NOT_SANITIZED" IN_LIST ARGN)
    tembra_warnings(${name})
  else()
    tembra_target(${name})
  endif()
  get_target_property(type ${name} TYPE)
  if(type STREQUAL "SHARED_LIBRARY")
    target_link_options(${name} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/exported.map)
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/exported.map)
  endif()
  if(TEMBRA_SANITIZE)
    return()
  endif()
  target_compile_options(${name} PRIVATE ${tembra_hardening}
    $<$<NOT:$<OR:$<CONFIG:>,$<CONFIG:Debug>>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${tembra_fortify_level}>)  # needs optimisation
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  if(type MATCHES "SHARED_LIBRARY|MODULE_LIBRARY|EXECUTABLE")
    target_link_options(${name} PRIVATE ${tembra_hardened_link})
  endif()
  if(NOT type STREQUAL "SHARED_LIBRARY" AND NOT "IN_LIBRARY" IN_LIST ARGN)
    target_compile_definitions(${name} PRIVATE _GLIBCXX_ASSERTIONS)  # they end the program, not somebody's front end
  endif()
endfunction()
