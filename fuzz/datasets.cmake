# Dataset texts: Parse of whole documents, UpdateData of data texts and
# AddDataRow / UpdateDataRow / InsertDataRow of row texts, in both classes.
veld_fuzzer(NAME dataset_parse_fuzzer SRCS dataset_parse_fuzzer.cc DICT xml.dict)
veld_fuzzer(NAME dataset_update_data_fuzzer SRCS dataset_update_data_fuzzer.cc DICT xml.dict)
veld_fuzzer(NAME dataset_add_row_fuzzer SRCS dataset_add_row_fuzzer.cc DICT xml.dict)
# Dataset files exported to a table, streamed and through the held document.
veld_fuzzer(NAME dataset_file_export_fuzzer SRCS dataset_file_export_fuzzer.cc DICT xml.dict)
