# kw_set_warnings(<target>): the warnings that all of our own code is clean of.
function(kw_set_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8
      $<$<BOOL:${KW_WARNINGS_AS_ERRORS}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
      -Wnon-virtual-dtor -Woverloaded-virtual
      # GCC 12 sees overlapping copies in plain concatenations of std::string (PR 105651).
      $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
      # With sanitizers it loses sight of what is initialised inside std::regex and std::function.
      $<$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:${KW_SANITIZE}>>:-Wno-maybe-uninitialized>
      $<$<BOOL:${KW_WARNINGS_AS_ERRORS}>:-Werror>)
  endif()
endfunction()
