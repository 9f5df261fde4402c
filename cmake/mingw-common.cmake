# Shared by both MinGW-w64 toolchain files. The -posix compilers are used
# because GoogleTest needs std::mutex, which the win32 thread model lacks.
set(CMAKE_C_COMPILER ${QM_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QM_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${QM_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${QM_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# The program needs no DLL beyond Windows' own.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
# ctest runs the cross-built tests through Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-exec)
