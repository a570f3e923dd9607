# Small declarative helpers, so that each CMakeLists.txt is a list of sources
# and dependencies.

function(veld_apply_warnings target)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wno-unused-parameter
                           -Wno-missing-field-initializers)
  elseif(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8)
  endif()
endfunction()

# Sanitizers (and the fuzzer's coverage instrumentation) apply to everything
# built in the tree, so that the library, tests and fuzz targets agree.
macro(veld_setup_sanitizers)
  if(VELD_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
  endif()
  if(VELD_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
      message(FATAL_ERROR "VELD_BUILD_FUZZERS needs clang (CXX=clang++)")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
  endif()
endmacro()

# veld_cc_library(SRCS a.cc b.cc): adds library sources to the one object
# library that both the shared and the static library are made from.
function(veld_cc_library)
  cmake_parse_arguments(ARG "" "" "SRCS" ${ARGN})
  list(TRANSFORM ARG_SRCS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  target_sources(veld_obj PRIVATE ${ARG_SRCS})
endfunction()

# veld_cc_test(NAME foo_test SRCS foo_test.cc [DEPS ...] [ENV VAR=value ...])
function(veld_cc_test)
  cmake_parse_arguments(ARG "" "NAME" "SRCS;DEPS;ENV" ${ARGN})
  if(WIN32 AND ARG_NAME IN_LIST VELD_WINDOWS_EXCLUDED_PROGRAMS)
    return()
  endif()
  add_executable(${ARG_NAME} ${ARG_SRCS})
  target_link_libraries(${ARG_NAME} PRIVATE veld_static veld_testing GTest::gtest_main
                        ${ARG_DEPS})
  veld_apply_warnings(${ARG_NAME})
  if(CMAKE_CROSSCOMPILING)
    # One run of the whole program: a process under the emulator (Wine)
    # costs far more than a test case.
    add_test(NAME ${ARG_NAME} COMMAND ${ARG_NAME})
    set_tests_properties(${ARG_NAME} PROPERTIES ENVIRONMENT "${ARG_ENV}")
  else()
    gtest_discover_tests(${ARG_NAME}
      DISCOVERY_MODE PRE_TEST
      PROPERTIES ENVIRONMENT "${ARG_ENV}")
  endif()
endfunction()

# veld_fuzzer(NAME fuzz_x SRCS x_fuzzer.cc [CORPUS dir] [DICT file])
# With VELD_BUILD_FUZZERS (clang) this is a libFuzzer binary plus a short
# smoke-run test; otherwise a replay binary that runs the corpus as a test.
function(veld_fuzzer)
  cmake_parse_arguments(ARG "" "NAME;CORPUS;DICT" "SRCS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SRCS})
  target_link_libraries(${ARG_NAME} PRIVATE veld_static)
  if(ARG_CORPUS)
    set(corpus "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_CORPUS}")
  else()
    set(corpus "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${ARG_NAME}")
  endif()
  if(VELD_BUILD_FUZZERS)
    target_link_options(${ARG_NAME} PRIVATE -fsanitize=fuzzer)
    set(dict_arg "")
    if(ARG_DICT)
      set(dict_arg "-dict=${CMAKE_CURRENT_SOURCE_DIR}/${ARG_DICT}")
    endif()
    if(VELD_BUILD_TESTS)
      # A short smoke run: a few seconds of mutation on top of the corpus,
      # with new inputs going to a scratch directory, not into the tree.
      add_test(NAME ${ARG_NAME}.smoke
        COMMAND ${CMAKE_COMMAND} -E env
          "${CMAKE_COMMAND}" -DFUZZER=$<TARGET_FILE:${ARG_NAME}> -DCORPUS=${corpus}
          "-DDICT_ARG=${dict_arg}" -DWORK=${CMAKE_CURRENT_BINARY_DIR}/${ARG_NAME}.work
          -P "${PROJECT_SOURCE_DIR}/cmake/RunFuzzSmoke.cmake")
    endif()
  else()
    target_sources(${ARG_NAME} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/replay_main.cc")
    if(VELD_BUILD_TESTS)
      add_test(NAME ${ARG_NAME}.replay COMMAND ${ARG_NAME} ${corpus})
    endif()
  endif()
endfunction()

# veld_benchmark(NAME bench_x SRCS x_bench.cc [DEPS ...])
function(veld_benchmark)
  cmake_parse_arguments(ARG "" "NAME" "SRCS;DEPS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SRCS})
  target_link_libraries(${ARG_NAME} PRIVATE veld_static benchmark::benchmark ${ARG_DEPS})
endfunction()
