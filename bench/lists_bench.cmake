# Qt's item views are what lists are measured beside; nothing else needs Qt Widgets.
find_package(Qt6 REQUIRED COMPONENTS Widgets)
set(measured plinth kits Qt6::Widgets)
