# The kits' own objects in place of libbe.so, which hides the display.
find_package(Threads REQUIRED)
find_package(Qt6 REQUIRED COMPONENTS Gui)
find_package(PkgConfig REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
pkg_check_modules(FONTS REQUIRED IMPORTED_TARGET freetype2 harfbuzz fontconfig)
set(tested)
set(hidden_sources $<TARGET_OBJECTS:be>)
set(hidden_libraries Qt6::Gui PkgConfig::XCB PkgConfig::FONTS Threads::Threads)
