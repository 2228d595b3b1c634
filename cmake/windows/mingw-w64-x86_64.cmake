# Toolchain: cross build with Debian's mingw-w64 (x86-64, posix threads), programs run under Wine.
#
# KW_WINDOWS_DEPS, a variable or an environment variable, is the prefix that
# scripts/windows-deps.sh has built; without it that script is asked where it is.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(kw_triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${kw_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${kw_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${kw_triplet}-windres)

if(NOT KW_WINDOWS_DEPS)
  if(DEFINED ENV{KW_WINDOWS_DEPS})
    set(KW_WINDOWS_DEPS "$ENV{KW_WINDOWS_DEPS}")
  else()
    execute_process(
      COMMAND "${CMAKE_CURRENT_LIST_DIR}/../../scripts/windows-deps.sh" --prefix
      OUTPUT_VARIABLE KW_WINDOWS_DEPS OUTPUT_STRIP_TRAILING_WHITESPACE
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
endif()
set(KW_WINDOWS_DEPS "${KW_WINDOWS_DEPS}" CACHE PATH "Prefix of the cross built dependencies")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KW_WINDOWS_DEPS)

# The import library of zlib would want a DLL of another package.
set(ZLIB_USE_STATIC_LIBS ON)

set(CMAKE_FIND_ROOT_PATH "${KW_WINDOWS_DEPS}" /usr/${kw_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR
  "${CMAKE_CURRENT_LIST_DIR}/wine-run" "${CMAKE_BINARY_DIR}/wine" "${KW_WINDOWS_DEPS}")
