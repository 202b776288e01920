# 32-bit Windows programs from Linux. They are built, not run: 64-bit Wine cannot start them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(LARKSPAN_TARGET_TRIPLE i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
