# Cross build (or, on Windows, native build) with a mingw-w64 GCC for 64-bit Windows.
if(NOT CMAKE_HOST_WIN32)
  set(CMAKE_SYSTEM_NAME Windows)
endif()
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Debian ships two thread models; GoogleTest needs std::mutex, which only the posix one has.
# Elsewhere (MSYS2) the plain name is the posix model already.
find_program(KDUUI_MINGW_CXX NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++ REQUIRED)
find_program(KDUUI_MINGW_CC NAMES x86_64-w64-mingw32-gcc-posix x86_64-w64-mingw32-gcc REQUIRED)
set(CMAKE_CXX_COMPILER "${KDUUI_MINGW_CXX}")
set(CMAKE_C_COMPILER "${KDUUI_MINGW_CC}")
if(NOT CMAKE_HOST_WIN32)
  set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
  set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
  set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
  # Built programs run under Wine; the script finds the private prefix and the display.
  set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run")
endif()
