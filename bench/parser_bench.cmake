# Throughput of the tool-output parser against std::regex doing the same
# rewrite, in the same run.
if(NOT TARGET benchmark::benchmark)
  find_package(benchmark REQUIRED)
endif()
add_executable(ads_parser_bench ${CMAKE_CURRENT_LIST_DIR}/parser_bench.cpp)
target_link_libraries(ads_parser_bench PRIVATE ads_parser benchmark::benchmark ads_warnings)
