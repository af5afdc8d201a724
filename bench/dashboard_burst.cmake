# bt_bench_dashboard_burst: how long the dashboard takes per alarm record in a
# burst (classification, both card lists, pop-up, counters); optionally saves
# a picture of the page after the burst.
add_executable(bt_bench_dashboard_burst ${CMAKE_CURRENT_LIST_DIR}/dashboard_burst.cpp
  $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(bt_bench_dashboard_burst PRIVATE bt_options BodyTemperatureCore)
set_target_properties(bt_bench_dashboard_burst PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
target_include_directories(bt_bench_dashboard_burst PRIVATE ${PROJECT_SOURCE_DIR}/tests)
