# Rules that the library hides.
list(APPEND sources ${PROJECT_SOURCE_DIR}/gadgets/entry_rules.cpp)
list(APPEND sources ${PROJECT_SOURCE_DIR}/gadgets/text_search.cpp)
