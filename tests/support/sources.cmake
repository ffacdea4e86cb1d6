# Archived objects are made again by their class's name, which the program has to export.
set(CMAKE_ENABLE_EXPORTS ON)
