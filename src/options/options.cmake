# The option codec and the page models of the tool option pages (no UI).
add_library(ads_options STATIC
  ${CMAKE_CURRENT_LIST_DIR}/option_text.cpp
  ${CMAKE_CURRENT_LIST_DIR}/option_tables.cpp
  ${CMAKE_CURRENT_LIST_DIR}/option_rows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/page_state.cpp
  ${CMAKE_CURRENT_LIST_DIR}/compiler_options.cpp
  ${CMAKE_CURRENT_LIST_DIR}/assembler_options.cpp
  ${CMAKE_CURRENT_LIST_DIR}/pages.cpp
  ${CMAKE_CURRENT_LIST_DIR}/dialog_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/option_page_views.cpp
  ${CMAKE_CURRENT_LIST_DIR}/settings_tree.cpp
  ${CMAKE_CURRENT_LIST_DIR}/settings_dialog_model.cpp
  ${CMAKE_CURRENT_LIST_DIR}/switch_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/linker_options.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fromelf_options.cpp
  ${CMAKE_CURRENT_LIST_DIR}/effective_options.cpp
  ${CMAKE_CURRENT_LIST_DIR}/text_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/path_check.cpp
  ${CMAKE_CURRENT_LIST_DIR}/target_pages.cpp
  ${CMAKE_CURRENT_LIST_DIR}/access_paths_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/file_mapping_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/property_page.cpp)
target_include_directories(ads_options PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(ads_options PUBLIC ads_config PRIVATE ads_warnings)

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/win32/win32.cmake)
endif()
