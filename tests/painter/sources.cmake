file(GLOB painter CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/kits/server/Painter*.cpp)
list(APPEND sources ${painter})
