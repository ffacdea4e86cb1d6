file(GLOB hidden_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/kits/server/Painter*.cpp)
