# 32-bit Windows programs from Linux. 64-bit Wine cannot start them; scripts/test-32-bit runs them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(LARKSPAN_TARGET_TRIPLE i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
