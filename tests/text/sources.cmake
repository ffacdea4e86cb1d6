# What libbe.so hides of the text view.
list(APPEND sources ${PROJECT_SOURCE_DIR}/kits/interface/text/TextBuffer.cpp
    ${PROJECT_SOURCE_DIR}/kits/interface/text/LineTable.cpp)
