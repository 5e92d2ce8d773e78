# One target a folder. A target sees the headers of another only when it names that target: every folder's headers
# are reached through an include directory of their own, so an include against the arrows does not compile.

add_library(harbor_options INTERFACE)
target_compile_features(harbor_options INTERFACE cxx_std_20)
target_compile_options(harbor_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2
  -fno-strict-aliasing -fstack-protector-strong -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)

set(HARBOR_INCLUDE_ROOT ${CMAKE_BINARY_DIR}/include)

# Links the folder's headers to ${HARBOR_INCLUDE_ROOT}/<target>/<prefix>/ and publishes that directory.
function(harbor_publish_headers target scope prefix)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  set(directory ${HARBOR_INCLUDE_ROOT}/${target}/${prefix})
  file(REMOVE_RECURSE ${directory})
  file(MAKE_DIRECTORY ${directory})
  foreach(header IN LISTS headers)
    cmake_path(GET header FILENAME name)
    file(CREATE_LINK ${header} ${directory}/${name} SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} ${HARBOR_INCLUDE_ROOT}/${target})
endfunction()

# harbor_library(<folder> [PREFIX <include prefix>] [EXCEPT <sources>] DEPENDS <targets> [PRIVATE_DEPENDS <targets>])
# makes the target harbor_<folder> of all sources in the current folder, those excepted that a program there is made of.
function(harbor_library folder)
  cmake_parse_arguments(ARG "" "PREFIX" "EXCEPT;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  if(NOT ARG_PREFIX)
    set(ARG_PREFIX ${folder})
  endif()
  set(target harbor_${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(TRANSFORM ARG_EXCEPT PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(REMOVE_ITEM sources ${ARG_EXCEPT})
  if(sources)
    add_library(${target} STATIC ${sources})
    target_link_libraries(${target} PUBLIC harbor_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
    harbor_publish_headers(${target} PUBLIC ${ARG_PREFIX})
  else()
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE harbor_options ${ARG_DEPENDS})
    harbor_publish_headers(${target} INTERFACE ${ARG_PREFIX})
  endif()
endfunction()

# harbor_system_sources(<folder> [LINUX <sources>] [APPLE <sources>]): what a folder's sources need of one system only.
function(harbor_system_sources folder)
  cmake_parse_arguments(ARG "" "" "LINUX;APPLE" ${ARGN})
  if(APPLE)
    target_sources(harbor_${folder} PRIVATE ${ARG_APPLE})
  else()
    target_sources(harbor_${folder} PRIVATE ${ARG_LINUX})
  endif()
endfunction()
