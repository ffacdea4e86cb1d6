# Qt's item views are what lists are measured beside, and GTK's if they are there; nothing else
# needs Qt Widgets or GTK.
find_package(Qt6 REQUIRED COMPONENTS Widgets)
set(measured plinth kits Qt6::Widgets)
find_package(PkgConfig REQUIRED)
pkg_check_modules(GTK IMPORTED_TARGET gtk+-3.0)
if(GTK_FOUND)
    list(APPEND measured PkgConfig::GTK)
    set(beside lists_gtk.cpp)
endif()
