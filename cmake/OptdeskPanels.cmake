# The panel library: the four dockable panels and what they are built of.
file(GLOB OPTDESK_PANEL_SOURCES CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/board/*.cpp ${CMAKE_SOURCE_DIR}/board/*.h
  ${CMAKE_SOURCE_DIR}/order/*.cpp ${CMAKE_SOURCE_DIR}/order/*.h
  ${CMAKE_SOURCE_DIR}/strategy/*.cpp ${CMAKE_SOURCE_DIR}/strategy/*.h
  ${CMAKE_SOURCE_DIR}/positions/*.cpp ${CMAKE_SOURCE_DIR}/positions/*.h)
add_library(optdesk_panels STATIC ${OPTDESK_PANEL_SOURCES} ${CMAKE_SOURCE_DIR}/cmake/empty.cpp)
add_library(optdesk::panels ALIAS optdesk_panels)
set_target_properties(optdesk_panels PROPERTIES EXPORT_NAME panels)
target_link_libraries(optdesk_panels PUBLIC optdesk_toolkit optdesk_seam)
optdesk_warnings(optdesk_panels)
optdesk_autogen_follows(optdesk_panels ${OPTDESK_PANEL_SOURCES})
