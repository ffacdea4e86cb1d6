# The list of recent files is read and written as other programs do it.
set(hidden_libraries PkgConfig::GIO)
set(alone application_test.cpp roster_test.cpp)
