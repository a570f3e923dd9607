# The Qt list adapter against the headless list, when Qt is there.
if(VELD_HAVE_QT)
  veld_benchmark(NAME qt_list_bench SRCS qt_list_bench.cc DEPS veld_qt_static)
endif()
