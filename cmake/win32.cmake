# Windows i686: what the closed host loads.
set(QLX_MINGW_TRIPLE i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/QlxMingw.cmake)
