# What every target of the project is built with.
add_library(vellum_options INTERFACE)
target_compile_features(vellum_options INTERFACE cxx_std_20)
target_compile_options(vellum_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# Every build gives the same bytes: no product is fused into a sum, whatever the instruction set.
target_compile_options(vellum_options INTERFACE -ffp-contract=off)
if(VELLUM_ARCH)
  target_compile_options(vellum_options INTERFACE -march=${VELLUM_ARCH})
endif()
if(VELLUM_TRACE)
  target_compile_definitions(vellum_options INTERFACE VELLUM_TRACE)
endif()
if(VELLUM_SANITIZE)
  target_compile_options(vellum_options INTERFACE -fsanitize=${VELLUM_SANITIZE} -fno-omit-frame-pointer
                                                  -fno-sanitize-recover=all)
  target_link_options(vellum_options INTERFACE -fsanitize=${VELLUM_SANITIZE})
endif()

# vellum_add_layer(NAME SOURCES... LINKS...): one folder under src/ as a library that links only what stands below.
function(vellum_add_layer NAME)
  cmake_parse_arguments(LAYER "" "" "SOURCES;LINKS" ${ARGN})
  add_library(vellum_${NAME} STATIC ${LAYER_SOURCES})
  set_target_properties(vellum_${NAME} PROPERTIES POSITION_INDEPENDENT_CODE ON
                        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(vellum_${NAME} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(vellum_${NAME} PUBLIC ${LAYER_LINKS} PRIVATE vellum_options)
endfunction()
