# Items documents: KvoGeneralItems::Parse, then Save and a second Parse.
veld_fuzzer(NAME items_parse_fuzzer SRCS items_parse_fuzzer.cc DICT xml.dict)
