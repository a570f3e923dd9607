# The control helper: row removal and tree loading over arbitrary documents
# and arguments.
veld_fuzzer(NAME data_ctrl_helper_fuzzer SRCS data_ctrl_helper_fuzzer.cc DICT xml.dict)

# The image combo loaders and selectors over arbitrary documents and arguments.
veld_fuzzer(NAME image_combo_fuzzer SRCS image_combo_fuzzer.cc DICT xml.dict)

# List view column specs, and the cell formatting over codes and raw texts.
veld_fuzzer(NAME list_view_columns_fuzzer SRCS list_view_columns_fuzzer.cc DICT xml.dict)
veld_fuzzer(NAME format_column_data_fuzzer SRCS format_column_data_fuzzer.cc DICT format.dict)
