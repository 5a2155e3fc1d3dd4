# The binary boundary: what a caller of any language may bring.
zul_room(fuzz_values SOURCES Values.cpp LIBS zul_automation_cpp)

zul_fuzz(variant_fuzz SOURCES VariantFuzz.cpp LIBS zul_fuzz_values)
zul_fuzz(safe_array_fuzz SOURCES SafeArrayFuzz.cpp LIBS zul_fuzz_values)
zul_fuzz(row_set_fuzz SOURCES RowSetFuzz.cpp LIBS zul_session zul_fuzz_values)

# The public object without its windows.
zul_room(fuzz_component
  SOURCES StandInWindows.cpp "${CMAKE_SOURCE_DIR}/component/ClassInfoLinux.cpp"
    "${CMAKE_SOURCE_DIR}/component/SmsCreatorObject.cpp" "${CMAKE_SOURCE_DIR}/component/modMainSession.cpp"
  LIBS zul_session_forms zul_fuzz_values)
zul_fuzz(invoke_fuzz SOURCES InvokeFuzz.cpp LIBS zul_fuzz_component)
zul_fuzz(event_sink_fuzz SOURCES EventSinkFuzz.cpp LIBS zul_fuzz_component)
