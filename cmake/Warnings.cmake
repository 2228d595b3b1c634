# kw_set_warnings(<target>): the warnings that all of our own code is clean of.
function(kw_set_warnings target)
  if(MSVC)
    # 4251, 4275: classes of the C++ library in our interface; both sides use the same one.
    target_compile_options(${target} PRIVATE
      /W4 /permissive- /utf-8 /bigobj /Zc:preprocessor /Zc:__cplusplus /wd4251 /wd4275
      $<$<BOOL:${KW_WARNINGS_AS_ERRORS}>:/WX>)
    target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS)
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
      -Wnon-virtual-dtor -Woverloaded-virtual
      # GCC 12 sees overlapping copies in plain concatenations of std::string (PR 105651).
      $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
      $<$<BOOL:${KW_WARNINGS_AS_ERRORS}>:-Werror>)
    # With sanitizers GCC loses sight of what std::regex and std::function have initialised.
    if(KW_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
  endif()
endfunction()
