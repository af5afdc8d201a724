# The device emulator: a thermal face camera on the network (bin/devicesim).
file(GLOB _devicesim_src CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
# RTSP streams: the GStreamer RTSP server with its x264/x265 encoders (Debian packages).
pkg_check_modules(GSTRTSP REQUIRED IMPORTED_TARGET gstreamer-1.0 gstreamer-app-1.0 gstreamer-rtsp-server-1.0)
add_executable(devicesim ${_devicesim_src})
target_link_libraries(devicesim PRIVATE bt_options Qt5::Core Qt5::Gui PkgConfig::HTTPLIB
  OpenSSL::Crypto OpenSSL::SSL SQLite::SQLite3 nlohmann_json::nlohmann_json Threads::Threads PkgConfig::GSTRTSP)
