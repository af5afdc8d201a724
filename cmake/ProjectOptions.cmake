# One interface target that every target links: language level, warnings,
# strict Qt usage, and the optional sanitizer build.
option(BT_SANITIZE "Build everything with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
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
if(BT_SANITIZE)
  target_compile_options(bt_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
  target_link_options(bt_options INTERFACE -fsanitize=address,undefined)
endif()
