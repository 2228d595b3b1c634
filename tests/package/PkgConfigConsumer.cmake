include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")

run("${PKG_CONFIG}" --modversion KWFontService17)
if(NOT run_output MATCHES "^17\\.")
  message(FATAL_ERROR "pkg-config knows KWFontService17 as version ${run_output}")
endif()

run("${PKG_CONFIG}" --cflags --libs KWFontService17)
separate_arguments(flags UNIX_COMMAND "${run_output}")
run("${CXX}" -std=c++20 "${CONSUMER}/consumer.cpp" -o "${WORK}/consumer" ${flags}
  "-Wl,-rpath,${PREFIX}/${LIBDIR}")
run("${WORK}/consumer")
expect_consumer_output("${run_output}")
