# For Debian's cross compiler of armhf.
set(TEMBRA_CROSS_NAME armhf)
set(TEMBRA_CROSS_TRIPLET arm-linux-gnueabihf)
set(TEMBRA_CROSS_COMPILER arm-linux-gnueabihf)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
include(${CMAKE_CURRENT_LIST_DIR}/debian.cmake)
