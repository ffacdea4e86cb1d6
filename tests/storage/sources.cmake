# The mount table is read by tests as text: none of them mounts anything.
set(hidden_sources)
foreach(name IN ITEMS MountTable VolumeLabels Attributes HostErrors
        DataFolders DesktopEntries FileLock FileReplacement FolderChanges MimeApplications MimeNames
        SharedMime UriPaths)
    list(APPEND hidden_sources ${PROJECT_SOURCE_DIR}/kits/storage/${name}.cpp)
endforeach()
set(hidden_libraries PkgConfig::GIO)
