# Fuzz targets of the xmlhelper layer.

# XPath text against a held document: GetXmlByXPath, GetElemAttribute and
# RemoveNodes of KvoXmlHelper, after LoadXml of fuzzed text.
veld_fuzzer(NAME xmlhelper_xpath_fuzzer SRCS xmlhelper_xpath_fuzzer.cc DICT xml.dict)

# Style sheet text: KvoXmlHelper's transform members with a fuzzed style sheet
# file; nothing may be written besides the target file.
veld_fuzzer(NAME xmlhelper_transform_fuzzer SRCS xmlhelper_transform_fuzzer.cc DICT xml.dict)
