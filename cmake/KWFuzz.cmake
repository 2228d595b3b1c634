# kw_add_fuzzer(<name> <files>... [CORPUS <folders>...] [LIBRARIES <targets>...])
#
# <files> define LLVMFuzzerTestOneInput. With KW_BUILD_FUZZERS (clang) this makes the libFuzzer
# program build/<preset>/fuzzers/<name>, part of the target kw_fuzzers. Otherwise it makes
# <name>_replay from the same files and fuzz/ReplayMain.cpp, and an ordinary test, label fuzz, that
# runs every file of the corpus folders through it, under whatever sanitizer the build has.
function(kw_add_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "CORPUS;LIBRARIES")
  if(KW_BUILD_FUZZERS)
    set(target ${name})
    add_executable(${target} EXCLUDE_FROM_ALL ${arg_UNPARSED_ARGUMENTS})
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${target} PROPERTIES
      RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/fuzzers")
    if(NOT TARGET kw_fuzzers)
      add_custom_target(kw_fuzzers)
    endif()
    add_dependencies(kw_fuzzers ${target})
  else()
    set(target ${name}_replay)
    add_executable(${target} ${arg_UNPARSED_ARGUMENTS} "${PROJECT_SOURCE_DIR}/fuzz/ReplayMain.cpp")
    if(KW_BUILD_TESTS)
      add_test(NAME Fuzz.${name}ReplaysItsCorpus COMMAND ${target} ${arg_CORPUS})
      set_tests_properties(Fuzz.${name}ReplaysItsCorpus PROPERTIES
        LABELS fuzz TIMEOUT 300
        ENVIRONMENT "FONTCONFIG_FILE=${PROJECT_SOURCE_DIR}/tests/support/no-fonts.conf")
    endif()
  endif()
  kw_set_warnings(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE kw_internal kw_test_support ${arg_LIBRARIES})
endfunction()
