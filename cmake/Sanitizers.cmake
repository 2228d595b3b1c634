# Sanitizers go on everything or on nothing: a half-instrumented program reports false races
# and misses overflows that cross a library boundary.
if(KW_SANITIZE)
  add_compile_options(-fsanitize=${KW_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KW_SANITIZE})
endif()
if(KW_BUILD_FUZZERS AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
