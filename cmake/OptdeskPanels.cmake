# The panel library: the four dockable panels and what they are built of. Each
# panel folder is a library of its own (with a Qt-Core-only core for the logic
# that needs no widget); optdesk_panels gathers them for a host.
add_subdirectory(${CMAKE_SOURCE_DIR}/order ${CMAKE_BINARY_DIR}/order)
add_subdirectory(${CMAKE_SOURCE_DIR}/strategy ${CMAKE_BINARY_DIR}/strategy)
add_subdirectory(${CMAKE_SOURCE_DIR}/board ${CMAKE_BINARY_DIR}/board)
add_subdirectory(${CMAKE_SOURCE_DIR}/positions ${CMAKE_BINARY_DIR}/positions)

set(OPTDESK_PANEL_TARGETS optdesk_order_core optdesk_order optdesk_board_core optdesk_board
  optdesk_positions_core optdesk_positions optdesk_strategy_core optdesk_strategy)

add_library(optdesk_panels INTERFACE)
add_library(optdesk::panels ALIAS optdesk_panels)
set_target_properties(optdesk_panels PROPERTIES EXPORT_NAME panels)
target_link_libraries(optdesk_panels INTERFACE optdesk_strategy optdesk_board optdesk_positions optdesk_order optdesk_toolkit optdesk_seam)
