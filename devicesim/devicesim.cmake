# The device emulator: a thermal face camera on the network (bin/devicesim).
file(GLOB _devicesim_src CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
add_executable(devicesim ${_devicesim_src})
target_link_libraries(devicesim PRIVATE bt_options Qt5::Core Qt5::Gui PkgConfig::HTTPLIB
  OpenSSL::Crypto OpenSSL::SSL SQLite::SQLite3 nlohmann_json::nlohmann_json Threads::Threads)
