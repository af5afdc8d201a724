# bt_bench_screening_record: the screening journal (GUI-thread cost per event,
# sustained throughput, file size per 100 000 events) and the shift report
# export of 100 000 events (CSV, PDF).
add_executable(bt_bench_screening_record ${CMAKE_CURRENT_LIST_DIR}/screening_record.cpp
  $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(bt_bench_screening_record PRIVATE bt_options BodyTemperatureCore)
set_target_properties(bt_bench_screening_record PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
