# What a driver, and the server behind it, can make the reference host read.
zul_fuzz(odbc_fuzz SOURCES OdbcFuzz.cpp LyingDriver.cpp LIBS zul_host_database)
