cmake_minimum_required(VERSION 3.25)
# ctest runs this: cmake -DFUZZER=<program> -DSEEDS=<folder> -DDICTIONARY=<file> -P RunFuzzer.cmake
# Fuzzes from a copy of the seeds, so that each run is like the one before and
# the seeds stay as they are. Fails if anything is found.
file(GLOB seeds ${SEEDS}/*)
if(NOT seeds)
  message(FATAL_ERROR "no seeds in '${SEEDS}'")
endif()
file(REMOVE_RECURSE ${FUZZER}.corpus)
file(COPY ${seeds} DESTINATION ${FUZZER}.corpus)
file(MAKE_DIRECTORY ${FUZZER}.found)
execute_process(
    COMMAND ${FUZZER} -seed=1 -max_total_time=20 -max_len=4096 -timeout=5 -rss_limit_mb=2048
        -print_final_stats=1 -dict=${DICTIONARY} -artifact_prefix=${FUZZER}.found/ ${FUZZER}.corpus
    RESULT_VARIABLE result
    ERROR_VARIABLE report)
if(NOT result EQUAL 0)
  message(NOTICE "${report}")
  message(FATAL_ERROR "the input that fails is in ${FUZZER}.found/")
endif()
string(REGEX MATCH "number_of_executed_units: *([0-9]+)" found "${report}")
if(NOT CMAKE_MATCH_1 GREATER 0)
  message(NOTICE "${report}")
  message(FATAL_ERROR "nothing was run")
endif()
message(STATUS "${CMAKE_MATCH_1} inputs, nothing found")
