# What other programs link: shared libraries of whole rooms, which export Kestrin's own names and nothing else.

# kestrin_library(NAME ROOMS ... [LINK LIBRARY...]): the rooms and those that they see, but for what LIBRARY has.
function(kestrin_library name)
  cmake_parse_arguments(LIBRARY "" "" "ROOMS;LINK" ${ARGN})
  add_library(${name} SHARED)
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINKER_LANGUAGE CXX
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_options(${name} PRIVATE
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map -Wl,--no-undefined -Wl,--as-needed)
  target_link_libraries(${name} PUBLIC ${LIBRARY_LINK})

  set(elsewhere kestrin_flags)
  foreach(library IN LISTS LIBRARY_LINK)
    get_target_property(rooms ${library} ROOMS)
    list(APPEND elsewhere ${rooms})
  endforeach()
  list(TRANSFORM LIBRARY_ROOMS PREPEND kestrin_ OUTPUT_VARIABLE waiting)
  while(waiting)
    list(POP_FRONT waiting room)
    list(APPEND rooms_here ${room})
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${room}>)
    target_include_directories(${name} INTERFACE
      $<BUILD_INTERFACE:$<TARGET_PROPERTY:${room},INTERFACE_INCLUDE_DIRECTORIES>>)
    get_target_property(used ${room} LINK_LIBRARIES)
    foreach(library IN LISTS used)
      if(NOT library MATCHES "^kestrin_")
        target_link_libraries(${name} PRIVATE ${library})
      elseif(NOT library IN_LIST elsewhere AND NOT library IN_LIST rooms_here)
        list(APPEND waiting ${library})
      endif()
    endforeach()
    list(REMOVE_DUPLICATES waiting)
  endwhile()
  set_target_properties(${name} PROPERTIES ROOMS "${rooms_here}")
endfunction()

kestrin_library(kestrin ROOMS core)
kestrin_library(kestrin-gtk ROOMS linux recording LINK kestrin)
kestrin_library(kestrin-content ROOMS content)
