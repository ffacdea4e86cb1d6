find_package(Qt6 REQUIRED COMPONENTS Widgets)
set(measured plinth kits Qt6::Widgets)
