# The project file of orvhost: the tree of ConfigNodes as XML.
add_library(ads_host_project STATIC ${CMAKE_CURRENT_LIST_DIR}/project_file.cpp)
target_include_directories(ads_host_project PUBLIC ${PROJECT_SOURCE_DIR}/host)
target_link_libraries(ads_host_project PUBLIC ads_config PRIVATE ads_warnings)
