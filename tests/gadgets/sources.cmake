# Rules that the library hides.
list(APPEND sources ${PROJECT_SOURCE_DIR}/gadgets/entry_rules.cpp)
list(APPEND sources ${PROJECT_SOURCE_DIR}/gadgets/text_search.cpp)
set(alone controls_test.cpp entry_fields_test.cpp gadgets_test.cpp killing_test.cpp list_input_test.cpp)
