# libFuzzer targets (clang only). Each compiles the sources it exercises
# itself, so that they are instrumented for coverage and checked by the
# sanitizers; what it links besides is not instrumented.
if(NOT (ADS_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
  return()
endif()
set(ADS_FUZZ_DIR ${CMAKE_CURRENT_LIST_DIR})
set(ADS_SRC ${PROJECT_SOURCE_DIR}/src)

function(ads_add_fuzz_target name)
  cmake_parse_arguments(F "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(ads_${name} ${ADS_FUZZ_DIR}/${name}.cpp ${F_SOURCES} ${ADS_SRC}/platform/text.cpp)
  target_include_directories(ads_${name} PRIVATE
    ${ADS_SRC} ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/host ${PROJECT_SOURCE_DIR}/tests)
  target_compile_options(ads_${name} PRIVATE
    -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -g)
  target_link_options(ads_${name} PRIVATE -fsanitize=fuzzer,address,undefined)
  target_link_libraries(ads_${name} PRIVATE ${F_LIBS} ads_warnings)
endfunction()

set(ADS_OPTION_SOURCES
  ${ADS_SRC}/options/option_text.cpp ${ADS_SRC}/options/option_tables.cpp ${ADS_SRC}/options/option_rows.cpp
  ${ADS_SRC}/options/page_state.cpp ${ADS_SRC}/options/compiler_options.cpp
  ${ADS_SRC}/options/assembler_options.cpp ${ADS_SRC}/options/pages.cpp)

# The pattern matcher and the tool-output parser.
foreach(target pattern_fuzz parser_fuzz)
  ads_add_fuzz_target(${target} SOURCES ${ADS_SRC}/build/pattern.cpp ${ADS_SRC}/build/output_parser.cpp)
endforeach()
# The option codec.
ads_add_fuzz_target(options_fuzz SOURCES ${ADS_OPTION_SOURCES} LIBS ads_config)
# The CodeWarrior export reader and the panel translators; TinyXML is the system's.
ads_add_fuzz_target(importer_fuzz
  SOURCES ${ADS_SRC}/import/export_filter.cpp ${ADS_SRC}/import/panel_text.cpp ${ADS_SRC}/import/panel_readers.cpp
          ${ADS_SRC}/import/project_files.cpp ${ADS_SRC}/import/export_reader.cpp ${ADS_SRC}/import/panel_values.cpp
          ${ADS_SRC}/import/panel_translators.cpp ${ADS_SRC}/import/link_translators.cpp ${ADS_OPTION_SOURCES}
  LIBS ads_config tinyxml)
# orvhost's project file reader and writer, with the tree.
ads_add_fuzz_target(project_fuzz
  SOURCES ${PROJECT_SOURCE_DIR}/host/project_file.cpp ${ADS_SRC}/config/config_node.cpp
          ${ADS_SRC}/config/shared_attributes.cpp)
# The registry kept in a .reg file.
ads_add_fuzz_target(registry_fuzz SOURCES ${ADS_SRC}/platform/registry_file.cpp ${ADS_SRC}/platform/folders.cpp)
# The settings dialog's model over random projects and clicks.
ads_add_fuzz_target(dialog_fuzz
  SOURCES ${ADS_OPTION_SOURCES} ${ADS_SRC}/options/effective_options.cpp ${ADS_SRC}/options/switch_page.cpp
          ${ADS_SRC}/options/linker_options.cpp ${ADS_SRC}/options/fromelf_options.cpp
          ${ADS_SRC}/options/dialog_page.cpp ${ADS_SRC}/options/option_page_views.cpp
          ${ADS_SRC}/options/settings_tree.cpp ${ADS_SRC}/options/settings_dialog_model.cpp
          ${ADS_SRC}/options/text_page.cpp ${ADS_SRC}/options/path_check.cpp ${ADS_SRC}/options/target_pages.cpp
          ${ADS_SRC}/options/access_paths_page.cpp ${ADS_SRC}/options/file_mapping_page.cpp
          ${ADS_SRC}/options/property_page.cpp
  LIBS ads_config)
# The debug options: the packed text, the storage attributes, the chosen driver.
ads_add_fuzz_target(debug_fuzz
  SOURCES ${ADS_SRC}/debug/debug_options.cpp ${ADS_SRC}/debug/driver_list.cpp ${ADS_SRC}/debug/storage_list.cpp
  LIBS ads_config)
