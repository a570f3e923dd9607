# Option documents: KvoOption::LoadOptionFromXml, then the option operations
# over what it loaded and a save and reload.
veld_fuzzer(NAME option_xml_fuzzer SRCS option_xml_fuzzer.cc DICT xml.dict)

# Encoded option values: KvoOption::Decode, and Encode followed by Decode.
veld_fuzzer(NAME option_decode_fuzzer SRCS option_decode_fuzzer.cc)

# The save path: an option of arbitrary bytes saved over a file that loads.
veld_fuzzer(NAME option_save_fuzzer SRCS option_save_fuzzer.cc)
