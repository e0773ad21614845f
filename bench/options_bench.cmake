# The effective option string per target and per file, against the file
# attribute look-up in the same run.
if(NOT TARGET benchmark::benchmark)
  find_package(benchmark REQUIRED)
endif()
add_executable(ads_options_bench ${CMAKE_CURRENT_LIST_DIR}/options_bench.cpp)
target_link_libraries(ads_options_bench PRIVATE ads_options benchmark::benchmark ads_warnings)
