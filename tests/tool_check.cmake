# check(NAME STATUS OUTPUT INPUT COMMAND...): runs COMMAND with INPUT on its
# standard input (written to ${WORK}/NAME.in) and fails unless the exit
# status is STATUS and the standard output is OUTPUT.  Included by the
# scripts that test the `ox` tool's subcommands.
function(check name expected_rc expected_out input)
  file(WRITE "${WORK}/${name}.in" "${input}")
  execute_process(COMMAND ${ARGN} INPUT_FILE "${WORK}/${name}.in" OUTPUT_VARIABLE out ERROR_VARIABLE err
                  RESULT_VARIABLE rc)
  if(NOT rc STREQUAL expected_rc)
    message(FATAL_ERROR "${name}: exit status ${rc}, expected ${expected_rc} (${err})")
  endif()
  if(NOT out STREQUAL expected_out)
    message(FATAL_ERROR "${name}: output\n${out}expected\n${expected_out}")
  endif()
endfunction()
