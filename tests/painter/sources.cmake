include(${CMAKE_CURRENT_SOURCE_DIR}/server/sources.cmake)
set(alone rows_test.cpp)
