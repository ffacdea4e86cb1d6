# A thread that ends unwinds its stack.
set(alone thread_test.cpp)
set_source_files_properties(kernel/thread_test.cpp PROPERTIES
    COMPILE_OPTIONS -fexceptions SKIP_PRECOMPILE_HEADERS ON)
