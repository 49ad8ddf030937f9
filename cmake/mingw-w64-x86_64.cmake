# Cross-builds the library for 64-bit Windows with Debian's mingw-w64 (POSIX threading model) and
# runs the resulting programs under wine through .ci/wine-run.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ZO_MINGW_PREFIX x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZO_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZO_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${ZO_MINGW_PREFIX}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${ZO_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../.ci/wine-run)
