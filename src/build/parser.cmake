# The pattern matcher and the tool-output parser.
add_library(ads_parser STATIC
  ${CMAKE_CURRENT_LIST_DIR}/pattern.cpp
  ${CMAKE_CURRENT_LIST_DIR}/output_parser.cpp)
target_include_directories(ads_parser PUBLIC ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(ads_parser PRIVATE ads_warnings)
