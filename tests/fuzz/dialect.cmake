zul_fuzz(DialectFuzz SOURCES DialectFuzz.cpp LIBS zul_dialect)
