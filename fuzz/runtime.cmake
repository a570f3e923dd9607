# Display formats: Format over arbitrary values and patterns in five locales.
veld_fuzzer(NAME format_fuzzer SRCS format_fuzzer.cc DICT format.dict)

# Dates read from text, with a written-and-read-again round trip.
veld_fuzzer(NAME date_text_fuzzer SRCS date_text_fuzzer.cc DICT format.dict)
