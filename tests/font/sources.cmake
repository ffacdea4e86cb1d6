include(${CMAKE_CURRENT_SOURCE_DIR}/server/sources.cmake)
set(alone scaled_text_test.cpp)
