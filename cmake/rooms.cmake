# A room is one folder below src/, or a folder inside one, and one static library. Its headers are
# reached as "room/header.h" through a folder of its own that holds nothing but a link to the room,
# so a header of a room that was not linked is not found and a wrong include does not build.

# zr5_room(ROOM [room ...]): the library of every source in src/ROOM, which may use the rooms named
# after it. Its target is zr5_ROOM, with "_" for "/". In libs, files that end in _linux.cpp or
# _windows.cpp are taken on their own platform only.
function(zr5_room room)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${room}/*.cpp)
    file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${room}/*.h)
    if(WIN32)
        list(FILTER sources EXCLUDE REGEX "/libs/.*_linux\\.cpp$")
    else()
        list(FILTER sources EXCLUDE REGEX "/libs/.*_windows\\.cpp$")
    endif()
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    string(REPLACE "/" "_" name ${room})
    set(root ${CMAKE_BINARY_DIR}/rooms/${name})
    cmake_path(GET room PARENT_PATH above)
    file(MAKE_DIRECTORY ${root}/${above})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${room} ${root}/${room} SYMBOLIC)
    add_library(zr5_${name} STATIC ${sources} ${headers})
    target_link_libraries(zr5_${name} PRIVATE zr5_compiler)
    target_include_directories(zr5_${name} PUBLIC ${root})
    foreach(used IN LISTS ARGN)
        string(REPLACE "/" "_" used ${used})
        target_link_libraries(zr5_${name} PUBLIC zr5_${used})
    endforeach()
endfunction()
