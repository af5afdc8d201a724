# bt_bench_alarm_burst: a burst of alarm events with 1080p scenes published
# from a worker thread into a full page: longest GUI stall, time until the
# counters are exact, peak memory.
add_executable(bt_bench_alarm_burst ${CMAKE_CURRENT_LIST_DIR}/alarm_burst.cpp
  $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(bt_bench_alarm_burst PRIVATE bt_options BodyTemperatureCore)
set_target_properties(bt_bench_alarm_burst PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
target_include_directories(bt_bench_alarm_burst PRIVATE ${PROJECT_SOURCE_DIR}/tests)
