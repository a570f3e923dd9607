# The control helper: row removal and tree loading over arbitrary documents
# and arguments.
veld_fuzzer(NAME data_ctrl_helper_fuzzer SRCS data_ctrl_helper_fuzzer.cc DICT xml.dict)

# The image combo loaders and selectors over arbitrary documents and arguments.
veld_fuzzer(NAME image_combo_fuzzer SRCS image_combo_fuzzer.cc DICT xml.dict)
