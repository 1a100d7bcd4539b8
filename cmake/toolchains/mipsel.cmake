# For Debian's cross compiler of mipsel.
set(TEMBRA_CROSS_NAME mipsel)
set(TEMBRA_CROSS_TRIPLET mipsel-linux-gnu)
set(TEMBRA_CROSS_COMPILER mipsel-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR mips)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
