set(alone gradient_test.cpp menu_test.cpp picture_table_test.cpp tab_view_test.cpp)
