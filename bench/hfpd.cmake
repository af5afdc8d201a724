# Returning-person detail view: renders it (gallery) and measures its first
# page and its paging against the emulator (bench). Not run by ctest.
add_executable(hfpd_detail ${CMAKE_CURRENT_LIST_DIR}/hfpd_detail.cpp $<TARGET_OBJECTS:BodyTemperatureResources>)
target_link_libraries(hfpd_detail PRIVATE BodyTemperatureCore)
target_include_directories(hfpd_detail PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(hfpd_detail PRIVATE
  BT_BUILD_DIR="${CMAKE_BINARY_DIR}" BT_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
if(TARGET devicesim)
  add_dependencies(hfpd_detail devicesim)
endif()
# The emulator helpers of the tests (DeviceSim, waitUntil) are reused here.
target_sources(hfpd_detail PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/TestSupport.cpp)
target_link_libraries(hfpd_detail PRIVATE GTest::gtest Qt5::Test)
