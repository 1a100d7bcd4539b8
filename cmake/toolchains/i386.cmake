# For Debian's cross compiler of i386.
set(TEMBRA_CROSS_NAME i386)
set(TEMBRA_CROSS_TRIPLET i386-linux-gnu)
set(TEMBRA_CROSS_COMPILER i686-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
