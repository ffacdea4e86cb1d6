# The services that stand in for the desktop's.
find_package(PkgConfig REQUIRED)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0)
set(hidden_libraries PkgConfig::GIO)
