# The binary boundary: what a caller of any language may bring.
zul_room(fuzz_values SOURCES Values.cpp LIBS zul_automation_cpp)

zul_fuzz(variant_fuzz SOURCES VariantFuzz.cpp LIBS zul_fuzz_values)
zul_fuzz(safe_array_fuzz SOURCES SafeArrayFuzz.cpp LIBS zul_fuzz_values)
