# Full key names: SplitFullKeyName, the first step of every KvoRegistry call.
veld_fuzzer(NAME registry_key_name_fuzzer SRCS registry_key_name_fuzzer.cc
            DICT registry_key_name.dict)

# Values XML: SetKeyValuesFromXml into an in-memory store, then
# GetKeyValuesToXml of the same key.
veld_fuzzer(NAME registry_values_xml_fuzzer SRCS registry_values_xml_fuzzer.cc DICT xml.dict)
