# TinyXML: Debian's library natively; for the mingw-w64 builds, the sources of
# Debian's source package, unpacked by scripts/setup into third_party/.
if(CMAKE_CROSSCOMPILING)
  set(ADS_TINYXML_DIR ${PROJECT_SOURCE_DIR}/third_party/tinyxml)
  if(NOT EXISTS ${ADS_TINYXML_DIR}/tinyxml.cpp)
    message(FATAL_ERROR "TinyXML sources missing in ${ADS_TINYXML_DIR}: run scripts/setup")
  endif()
  add_library(tinyxml STATIC
    ${ADS_TINYXML_DIR}/tinyxml.cpp ${ADS_TINYXML_DIR}/tinyxmlparser.cpp
    ${ADS_TINYXML_DIR}/tinyxmlerror.cpp ${ADS_TINYXML_DIR}/tinystr.cpp)
  target_include_directories(tinyxml SYSTEM PUBLIC ${ADS_TINYXML_DIR})
  target_compile_definitions(tinyxml PUBLIC TIXML_USE_STL)
  target_compile_options(tinyxml PRIVATE -w)
else()
  find_path(TINYXML_INCLUDE_DIR tinyxml.h REQUIRED)
  find_library(TINYXML_LIBRARY tinyxml REQUIRED)
  add_library(tinyxml INTERFACE)
  target_include_directories(tinyxml SYSTEM INTERFACE ${TINYXML_INCLUDE_DIR})
  target_link_libraries(tinyxml INTERFACE ${TINYXML_LIBRARY})
  target_compile_definitions(tinyxml INTERFACE TIXML_USE_STL)
endif()
