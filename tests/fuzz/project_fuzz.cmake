# libFuzzer target of orvhost's project file reader and writer (clang only).
# It compiles the reader's and the tree's sources itself, so that they are
# instrumented for coverage and checked by the sanitizers.
if(ADS_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(ads_project_fuzz
    ${CMAKE_CURRENT_LIST_DIR}/project_fuzz.cpp
    ${PROJECT_SOURCE_DIR}/host/project_file.cpp
    ${PROJECT_SOURCE_DIR}/src/config/config_node.cpp)
  target_include_directories(ads_project_fuzz PRIVATE
    ${PROJECT_SOURCE_DIR}/host ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  target_compile_options(ads_project_fuzz PRIVATE
    -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g)
  target_link_options(ads_project_fuzz PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_libraries(ads_project_fuzz PRIVATE ads_warnings)
endif()
