find_package(GTest REQUIRED)
include(GoogleTest)

set(kw_test_environment "FONTCONFIG_FILE=${PROJECT_SOURCE_DIR}/tests/support/no-fonts.conf")

# kw_discover_tests(<target> [OWN_PROCESS] [LABELS <labels>...] [TIMEOUT <seconds>])
#
# Each case of a GoogleTest program becomes a test of CTest, with a process of its own. Under an
# emulator the program is one test, since a thousand starts would take minutes, unless OWN_PROCESS
# says that its cases do not bear each other: the service opens once in a process.
function(kw_discover_tests target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "OWN_PROCESS" "TIMEOUT" "LABELS")
  if(CMAKE_CROSSCOMPILING AND NOT arg_OWN_PROCESS)
    add_test(NAME ${target} COMMAND ${target} WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")
    set_tests_properties(${target} PROPERTIES
      LABELS "${arg_LABELS}" TIMEOUT 600 ENVIRONMENT "${kw_test_environment}")
    return()
  endif()
  # Discovery runs the program; before the test run and not at link time, so that a build never
  # executes what it has just made.
  gtest_discover_tests(${target}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
    PROPERTIES TIMEOUT ${arg_TIMEOUT})
  set(serial FALSE)
  if("alone" IN_LIST arg_LABELS)
    set(serial TRUE)
  endif()
  # PROPERTIES cannot carry a list, and a test may have several labels.
  set(labels_file "${CMAKE_CURRENT_BINARY_DIR}/${target}_labels.cmake")
  file(CONFIGURE OUTPUT "${labels_file}" @ONLY CONTENT
    "if(@target@_TESTS)
  set_tests_properties(\${@target@_TESTS} PROPERTIES
    LABELS \"@arg_LABELS@\" ENVIRONMENT \"@kw_test_environment@\" RUN_SERIAL @serial@)
endif()
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${labels_file}")
endfunction()

# kw_add_japanese_run(<target>): the same program once more under Wine, in a process whose code page
# is 932. There the bytes of a name mean something else, and some of them are separators.
function(kw_add_japanese_run target)
  if(CMAKE_CROSSCOMPILING)
    add_test(NAME ${target}.InCodePage932 COMMAND ${target})
    set_tests_properties(${target}.InCodePage932 PROPERTIES
      TIMEOUT 600 ENVIRONMENT "${kw_test_environment};KW_WINE_LOCALE=ja_JP.UTF-8;KW_CODE_PAGE=932")
  endif()
endfunction()

# kw_add_tests(<room> <files>... [OWN_PROCESS] [LABELS <labels>...] [LIBRARIES <targets>...]
#              [TIMEOUT <seconds>])
#
# One GoogleTest executable <room>_tests, linked with all internal objects and the shared test
# support (target kw_test_support, made in tests/support). Every test carries the label <room>;
# tests that hand our output to foreign programs carry the label interop as well. A test sees no
# font that the machine has registered, unless it brings a fontconfig configuration of its own.
# The label alone is for tests that cannot bear others beside them.
# Give tests that start threads a kw_add_tests of their own with LABELS threads: that label is what
# the thread sanitizer builds (target kw_thread_tests) and runs.
add_custom_target(kw_thread_tests)

function(kw_add_tests room)
  cmake_parse_arguments(PARSE_ARGV 1 arg "OWN_PROCESS" "TIMEOUT" "LABELS;LIBRARIES")
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  set(target ${room}_tests)
  add_executable(${target} ${arg_UNPARSED_ARGUMENTS})
  kw_set_warnings(${target})
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE
    kw_internal kw_test_support ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
  if("threads" IN_LIST arg_LABELS)
    add_dependencies(kw_thread_tests ${target})
  endif()
  set(own_process "")
  if(arg_OWN_PROCESS)
    set(own_process OWN_PROCESS)
  endif()
  kw_discover_tests(${target} ${own_process}
    LABELS ${room} ${arg_LABELS} TIMEOUT ${arg_TIMEOUT})
endfunction()

# The system's Python sees the system's packages (fontTools); another one first in PATH may not.
find_program(KW_PYTHON3 python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(NOT KW_PYTHON3)
  find_program(KW_PYTHON3 python3 REQUIRED)
endif()
