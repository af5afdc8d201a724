# detail_dialog: click on "ViewDetails" to the detail dialog's first paint,
# against an empty dialog and with the share spent decoding.
add_executable(detail_dialog ${CMAKE_CURRENT_LIST_DIR}/detail_dialog.cpp $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(detail_dialog PRIVATE bt_options BodyTemperatureCore)
set_target_properties(detail_dialog PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
target_include_directories(detail_dialog PRIVATE ${PROJECT_SOURCE_DIR}/tests)
