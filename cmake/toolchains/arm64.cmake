# For Debian's cross compiler of arm64.
set(TEMBRA_CROSS_NAME arm64)
set(TEMBRA_CROSS_TRIPLET aarch64-linux-gnu)
set(TEMBRA_CROSS_COMPILER aarch64-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
