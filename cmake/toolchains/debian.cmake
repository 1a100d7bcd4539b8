# What the toolchains of Debian's cross compilers have in common. Libraries of the other CPU lie in a folder of their own,
# build/cross/CPU/root, which scripts/cross_root.sh fills.
get_filename_component(cross_root ${CMAKE_CURRENT_LIST_DIR}/../../build/cross/${TEMBRA_CROSS_NAME}/root ABSOLUTE)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${TEMBRA_CROSS_COMPILER}-gcc)
set(CMAKE_CXX_COMPILER ${TEMBRA_CROSS_COMPILER}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${TEMBRA_CROSS_TRIPLET})

set(CMAKE_FIND_ROOT_PATH ${cross_root} /usr/${TEMBRA_CROSS_COMPILER})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${cross_root})
set(ENV{PKG_CONFIG_LIBDIR}
    ${cross_root}/usr/lib/${TEMBRA_CROSS_TRIPLET}/pkgconfig:${cross_root}/usr/lib/pkgconfig:${cross_root}/usr/share/pkgconfig)

# Libraries that our libraries need are found here while linking.
set(libraries lib/${TEMBRA_CROSS_TRIPLET} usr/lib/${TEMBRA_CROSS_TRIPLET} usr/lib)
list(TRANSFORM libraries PREPEND ${cross_root}/)
list(JOIN libraries ":" libraries)
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,-rpath-link,${libraries})
set(CMAKE_SHARED_LINKER_FLAGS_INIT ${CMAKE_EXE_LINKER_FLAGS_INIT})
set(CMAKE_MODULE_LINKER_FLAGS_INIT ${CMAKE_EXE_LINKER_FLAGS_INIT})
