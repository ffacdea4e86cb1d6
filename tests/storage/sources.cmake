# The mount table is read by tests as text: none of them mounts anything.
set(hidden_sources ${PROJECT_SOURCE_DIR}/kits/storage/MountTable.cpp
    ${PROJECT_SOURCE_DIR}/kits/storage/Attributes.cpp
    ${PROJECT_SOURCE_DIR}/kits/storage/HostErrors.cpp)
