find_package(PkgConfig REQUIRED)
pkg_check_modules(FONTS REQUIRED IMPORTED_TARGET freetype2 harfbuzz fontconfig)
file(GLOB hidden_sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/kits/server/Font*.cpp
    ${PROJECT_SOURCE_DIR}/kits/server/Text*.cpp
    ${PROJECT_SOURCE_DIR}/kits/server/Painter*.cpp)
set(hidden_libraries PkgConfig::FONTS)
