# Texts that come from outside: files of operators and administrators, what is typed, what a server sends.
zul_fuzz(grid_layout_fuzz SOURCES GridLayoutFuzz.cpp LIBS zul_grid)
zul_fuzz(failed_numbers_fuzz SOURCES FailedNumbersFuzz.cpp LIBS zul_options)
zul_fuzz(placeholder_fuzz SOURCES PlaceholderFuzz.cpp LIBS zul_fuzz_host)
zul_fuzz(scenario_fuzz SOURCES ScenarioFuzz.cpp LIBS zul_fuzz_host)
zul_fuzz(command_line_fuzz SOURCES CommandLineFuzz.cpp LIBS zul_fuzz_host)
zul_fuzz(connection_string_fuzz SOURCES ConnectionStringFuzz.cpp LIBS zul_fuzz_host)
zul_fuzz(locale_fuzz SOURCES LocaleFuzz.cpp LIBS zul_base_locale zul_ftp zul_automation)
zul_fuzz(registration_fuzz SOURCES RegistrationFuzz.cpp LIBS zul_automation)
