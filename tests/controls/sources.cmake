include(${CMAKE_CURRENT_SOURCE_DIR}/server/sources.cmake)
set(alone text_control_test.cpp)
