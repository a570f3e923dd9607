# Items documents: KvoGeneralItems::Parse, then Save and a second Parse.
veld_fuzzer(NAME items_parse_fuzzer SRCS items_parse_fuzzer.cc DICT xml.dict)

# Items read in place from an element against Parse of the element's text.
veld_fuzzer(NAME items_element_fuzzer SRCS items_element_fuzzer.cc DICT xml.dict)
