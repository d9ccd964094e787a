# Which folders of src/ a folder may include. Its sources are compiled with a folder of links to these alone, so that an
# include that goes up is not found. Headers are checked by the sources that include them. KOR_WINDOWS tells windows from
# the core.

# kor_layer(NAME [ON folder...] [WINDOWS_ON folder...])
#   ON          what the sources of src/NAME stand on; what that stands on is seen as well
#   WINDOWS_ON  what its windows stand on besides
function(kor_layer name)
    cmake_parse_arguments(LAYER "" "" "ON;WINDOWS_ON" ${ARGN})
    kor_seen(seen ${name} CORE ${LAYER_ON})
    kor_seen(windowsSeen ${name} WINDOWS ${LAYER_ON} ${LAYER_WINDOWS_ON})
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
    set(windows ${sources})
    list(FILTER windows INCLUDE REGEX ${KOR_WINDOWS})
    list(FILTER sources EXCLUDE REGEX ${KOR_WINDOWS})
    kor_lay(${name} "${seen}" "${sources}")
    kor_lay(${name}-windows "${windowsSeen}" "${windows}")
endfunction()

# Sets out to all that NAME sees when it stands on the given folders. KIND is CORE or WINDOWS.
function(kor_seen out name kind)
    set(seen ${name})
    foreach(below IN LISTS ARGN)
        get_property(isLaid GLOBAL PROPERTY KOR_SEEN_BY_${below}_${kind} SET)
        if(NOT isLaid)
            message(FATAL_ERROR "src/${name} cannot stand on src/${below}, which comes after it")
        endif()
        get_property(further GLOBAL PROPERTY KOR_SEEN_BY_${below}_${kind})
        list(APPEND seen ${further})
    endforeach()
    list(REMOVE_DUPLICATES seen)
    set_property(GLOBAL PROPERTY KOR_SEEN_BY_${name}_${kind} ${seen})
    set(${out} ${seen} PARENT_SCOPE)
endfunction()

# Makes the folder of links and gives it to the sources.
function(kor_lay layer folders sources)
    # Where many sources are compiled as one they see the same folders.
    if(NOT sources OR CMAKE_UNITY_BUILD)
        return()
    endif()
    set(links ${CMAKE_BINARY_DIR}/layers/${layer})
    file(REMOVE_RECURSE ${links})
    file(MAKE_DIRECTORY ${links})
    foreach(folder IN LISTS folders)
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${links}/${folder} SYMBOLIC)
    endforeach()
    set_property(SOURCE ${sources} PROPERTY INCLUDE_DIRECTORIES ${links})
endfunction()
