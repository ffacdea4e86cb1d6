set(alone primitives_test.cpp)
