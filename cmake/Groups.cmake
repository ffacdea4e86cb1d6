# Compiling the sources of a folder at once halves what a whole build takes, and multiplies what one
# changed source does: ./test asks for it where it begins from nothing.
option(PLINTH_GROUPS "compile the sources of each folder at once" OFF)
if(PLINTH_GROUPS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # So much source at once is compiled a tenth sooner if the compiler looks for garbage later.
    add_compile_options(--param=ggc-min-heapsize=400000)
endif()

# compile_in_groups(TARGET [ALONE source ...]): what is alone has names that others in its folder, or
# headers that they include, have as well.
function(compile_in_groups target)
    if(NOT PLINTH_GROUPS)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 group "" "" "ALONE")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # What is private to one source looks as if a header had it.
    target_compile_options(${target} PRIVATE
        -Wno-attributes $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source)
        cmake_path(GET source FILENAME name)
        if(source MATCHES "\\.cpp$" AND NOT name IN_LIST group_ALONE)
            cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
            cmake_path(GET source PARENT_PATH folder)
            string(REPLACE "/" "_" folder ${folder})
            set_source_files_properties(${PROJECT_SOURCE_DIR}/${source} PROPERTIES
                UNITY_GROUP ${folder})
        endif()
    endforeach()
endfunction()
