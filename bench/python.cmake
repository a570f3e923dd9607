# The C++ baseline of bench/python_bench.py, when the Python module is built.
if(VELD_HAVE_PYTHON)
  veld_benchmark(NAME python_baseline_bench SRCS python_baseline_bench.cc)
endif()
