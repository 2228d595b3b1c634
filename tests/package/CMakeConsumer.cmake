include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

file(REMOVE_RECURSE "${WORK}")
file(READ "${README}" readme)
if(NOT readme MATCHES "\n```cpp\n([^`]*)```\n")
  message(FATAL_ERROR "${README} has no sample")
endif()
file(WRITE "${WORK}/readme_sample.cpp" "${CMAKE_MATCH_1}")

run("${CMAKE_COMMAND}" -S "${CONSUMER}" -B "${WORK}" -G "${GENERATOR}"
  "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_PREFIX_PATH=${PREFIX}"
  "-DREADME_SAMPLE=${WORK}/readme_sample.cpp"
  -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
run("${CMAKE_COMMAND}" --build "${WORK}")

run("${WORK}/consumer")
expect_consumer_output("${run_output}")

# The README says: glyphs are counted and a subset is written, smaller than the font.
run("${WORK}/readme_sample" "${WORK}/subset.ttf")
if(NOT run_output MATCHES "^26 glyphs, [1-9][0-9]* units wide\n$")
  message(FATAL_ERROR "the README's sample printed ${run_output}")
endif()
file(SIZE "${FONT}" font_size)
file(SIZE "${WORK}/subset.ttf" subset_size)
math(EXPR limit "${font_size} / 4")
if(subset_size LESS 1000 OR subset_size GREATER limit)
  message(FATAL_ERROR "the subset has ${subset_size} bytes, the font ${font_size}")
endif()
