# Importing a generated export of 50 targets and 5,000 files, against
# TinyXML parsing the same file in the same run.
if(NOT TARGET benchmark::benchmark)
  find_package(benchmark REQUIRED)
endif()
add_executable(ads_import_bench ${CMAKE_CURRENT_LIST_DIR}/import_bench.cpp)
target_link_libraries(ads_import_bench PRIVATE ads_import ads_host ads_platform tinyxml benchmark::benchmark ads_warnings)
