# One interface target that every target links: language level, warnings,
# strict Qt usage, and the optional sanitizer build.
# BT_SANITIZE: OFF; ON or address (AddressSanitizer + UndefinedBehaviorSanitizer);
# thread (ThreadSanitizer, which cannot be combined with the others).
set(BT_SANITIZE OFF CACHE STRING "OFF, ON/address (ASan + UBSan) or thread (TSan)")
set_property(CACHE BT_SANITIZE PROPERTY STRINGS OFF ON address thread)
# BT_FUZZ: clang only; instruments everything for coverage-guided fuzzing and
# builds the fuzz targets as libFuzzer programs.
option(BT_FUZZ "Build the fuzz targets as libFuzzer programs (clang)" OFF)
option(BT_WERROR "Treat warnings as errors" OFF)

add_library(bt_options INTERFACE)
target_compile_features(bt_options INTERFACE cxx_std_17)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
target_compile_options(bt_options INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wsuggest-override>)
if(BT_WERROR)
  target_compile_options(bt_options INTERFACE -Werror)
endif()
target_compile_definitions(bt_options INTERFACE
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_FOREACH
  QT_DISABLE_DEPRECATED_BEFORE=0x050C00)
string(TOLOWER "${BT_SANITIZE}" _bt_sanitize)
if(_bt_sanitize STREQUAL "thread")
  target_compile_options(bt_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(bt_options INTERFACE -fsanitize=thread)
elseif(_bt_sanitize STREQUAL "address" OR BT_SANITIZE)
  target_compile_options(bt_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
  target_link_options(bt_options INTERFACE -fsanitize=address,undefined)
endif()
if(BT_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "BT_FUZZ needs clang (CXX=clang++)")
  endif()
  target_compile_options(bt_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
  target_link_options(bt_options INTERFACE -fsanitize=address,undefined)
endif()
