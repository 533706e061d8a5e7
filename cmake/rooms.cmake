# A room is one folder below src/ and one static library. Its headers are reached as
# "room/header.h" through a folder of its own that holds nothing but a link to the room,
# so a header of a room that was not linked is not found and a wrong include does not build.

# zr5_room(NAME [room ...]): the library zr5_NAME of every source in src/NAME, which may
# use the rooms named after it. Files that end in _posix.cpp or _windows.cpp are taken on
# their own platform only.
function(zr5_room name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
    file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h)
    if(WIN32)
        list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
    else()
        list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
    endif()
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    if(NOT sources)
        return()
    endif()
    set(root ${CMAKE_BINARY_DIR}/rooms/${name})
    file(MAKE_DIRECTORY ${root})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${name} ${root}/${name} SYMBOLIC)
    add_library(zr5_${name} STATIC ${sources} ${headers})
    target_link_libraries(zr5_${name} PRIVATE zr5_compiler)
    target_include_directories(zr5_${name} PUBLIC ${root})
    foreach(room IN LISTS ARGN)
        if(TARGET zr5_${room})
            target_link_libraries(zr5_${name} PUBLIC zr5_${room})
        endif()
    endforeach()
endfunction()
