# run(<command>...): runs a step; a failure ends the test with the step's output.
# The step's standard output is left in run_output.
function(run)
  list(JOIN ARGN " " shown)
  execute_process(COMMAND ${ARGN}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${shown}\n${output}\n${errors}")
  endif()
  set(run_output "${output}" PARENT_SCOPE)
endfunction()

# expect_consumer_output(<text>): what tests/package/consumer prints, to the letter.
function(expect_consumer_output text)
  set(expected "GSUB = 0x47535542\nFS_FontInfo constructed\nKWError constructed\n")
  if(NOT text STREQUAL expected)
    message(FATAL_ERROR "the consumer printed\n${text}\nbut should print\n${expected}")
  endif()
endfunction()
