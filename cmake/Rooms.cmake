# A room is a folder under src/ and a target of its own. A room sees the headers of the rooms it links and of
# no other: each target exports one include directory that holds nothing but a link to its own folder.

# kestrin_room(NAME FOLDER <folder under src> [PORTABLE] SOURCES ... [LINK ...])
function(kestrin_room name)
  cmake_parse_arguments(ROOM "PORTABLE" "FOLDER" "SOURCES;LINK" ${ARGN})
  set(target kestrin_${name})
  set(folder ${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER})
  list(TRANSFORM ROOM_SOURCES PREPEND ${folder}/)
  add_library(${target} STATIC ${ROOM_SOURCES})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)

  set(view ${PROJECT_BINARY_DIR}/rooms/${name})
  cmake_path(GET ROOM_FOLDER PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  file(CREATE_LINK ${folder} ${view}/${ROOM_FOLDER} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${view})
  target_link_libraries(${target} PUBLIC ${ROOM_LINK} PRIVATE kestrin_flags)

  if(ROOM_PORTABLE)
    add_custom_target(${target}_headers
      COMMAND ${CMAKE_COMMAND} -DFOLDER=${folder} -P ${PROJECT_SOURCE_DIR}/cmake/PortableHeaders.cmake
      COMMENT "Checking that ${ROOM_FOLDER} is portable" VERBATIM)
    add_dependencies(${target} ${target}_headers)
  endif()
endfunction()
