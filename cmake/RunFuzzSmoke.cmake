# Runs a libFuzzer binary briefly over its corpus. Inputs it finds go to a
# scratch directory so the source tree is never written.
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
set(args -max_total_time=10 -rss_limit_mb=2048 -timeout=10 -print_final_stats=1)
if(DICT_ARG)
  list(APPEND args "${DICT_ARG}")
endif()
execute_process(COMMAND "${FUZZER}" ${args} "${WORK}" "${CORPUS}"
                RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "fuzzer ${FUZZER} failed with ${rc}")
endif()
