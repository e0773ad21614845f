# libFuzzer targets of the pattern matcher and the tool-output parser
# (clang only). Each compiles the parser's sources itself, so that they are
# instrumented for coverage and checked by the sanitizers.
if(ADS_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  foreach(target pattern_fuzz parser_fuzz)
    add_executable(ads_${target}
      ${CMAKE_CURRENT_LIST_DIR}/${target}.cpp
      ${PROJECT_SOURCE_DIR}/src/build/pattern.cpp
      ${PROJECT_SOURCE_DIR}/src/build/output_parser.cpp)
    target_include_directories(ads_${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_compile_options(ads_${target} PRIVATE
      -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g)
    target_link_options(ads_${target} PRIVATE -fsanitize=fuzzer,address,undefined)
    target_link_libraries(ads_${target} PRIVATE ads_warnings)
  endforeach()
endif()
