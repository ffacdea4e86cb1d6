file(GLOB hidden_sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/kits/server/Font*.cpp
    ${PROJECT_SOURCE_DIR}/kits/server/Text*.cpp
    ${PROJECT_SOURCE_DIR}/kits/server/Painter*.cpp)
set(hidden_libraries PkgConfig::FONTS)
