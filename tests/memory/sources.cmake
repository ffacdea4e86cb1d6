# What stands in for the allocation fails as that does.
set(alone failing_memory.cpp)
set_source_files_properties(memory/support/failing_memory.cpp PROPERTIES
    COMPILE_OPTIONS -fexceptions SKIP_PRECOMPILE_HEADERS ON)
