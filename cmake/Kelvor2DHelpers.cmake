# Build helpers shared by every target of the project.

# Warning and floating-point flags, applied to every target we build.
function(kelvor2d_apply_flags target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror -ffp-contract=off -fno-fast-math
                         # Point arrays, coordinate blocks and 2D/3D points are laid over one another.
                         -fno-strict-aliasing)
endfunction()

# Where the export header is generated, and the macro it defines: what a
# shared build exports carries KELVOR2D_API, everything else stays hidden.
set(KELVOR2D_GENERATED_DIR ${PROJECT_BINARY_DIR}/generated)
set(KELVOR2D_EXPORT_HEADER ${KELVOR2D_GENERATED_DIR}/kelvor2d_export.h)

function(kelvor2d_hide_symbols target)
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  if(BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PRIVATE kelvor2d_EXPORTS)
  else()
    target_compile_definitions(${target} PUBLIC KELVOR2D_STATIC_DEFINE)
  endif()
endfunction()

# kelvor2d_add_component(<name> SOURCES <files...> [HEADERS <files...>] [LIBS <targets...>])
# Declares the object library kelvor2d_<name> (one topic of a subsystem) and
# registers it for the public library. Tests link only the components they use.
function(kelvor2d_add_component name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;LIBS" ${ARGN})
  set(target kelvor2d_${name})
  add_library(${target} OBJECT ${ARG_SOURCES} ${ARG_HEADERS})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<BUILD_INTERFACE:${KELVOR2D_GENERATED_DIR}>)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ${BUILD_SHARED_LIBS})
  kelvor2d_hide_symbols(${target})
  if(ARG_LIBS)
    target_link_libraries(${target} PUBLIC ${ARG_LIBS})
  endif()
  kelvor2d_apply_flags(${target})
  set_property(GLOBAL APPEND PROPERTY KELVOR2D_COMPONENT_TARGETS ${target})
  set_property(GLOBAL APPEND PROPERTY KELVOR2D_LINK_LIBS ${ARG_LIBS})
endfunction()

# The installable library kelvor2d, made of the objects of every subsystem.
function(kelvor2d_add_public_library)
  get_property(components GLOBAL PROPERTY KELVOR2D_COMPONENT_TARGETS)
  get_property(libs GLOBAL PROPERTY KELVOR2D_LINK_LIBS)
  set(objects "")
  foreach(sub IN LISTS components)
    list(APPEND objects $<TARGET_OBJECTS:${sub}>)
  endforeach()
  add_library(kelvor2d ${objects} ${PROJECT_SOURCE_DIR}/kelvor2d.h)
  add_library(Kelvor2D::kelvor2d ALIAS kelvor2d)
  set_target_properties(kelvor2d PROPERTIES LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION}
                                            SOVERSION ${PROJECT_VERSION_MAJOR} EXPORT_NAME kelvor2d)
  target_include_directories(kelvor2d PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                             $<BUILD_INTERFACE:${KELVOR2D_GENERATED_DIR}>
                                             $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kelvor2d>)
  kelvor2d_hide_symbols(kelvor2d)
  include(GenerateExportHeader)
  generate_export_header(kelvor2d BASE_NAME KELVOR2D EXPORT_MACRO_NAME KELVOR2D_API
                         EXPORT_FILE_NAME ${KELVOR2D_EXPORT_HEADER} STATIC_DEFINE KELVOR2D_STATIC_DEFINE)
  target_compile_features(kelvor2d PUBLIC cxx_std_17)
  list(REMOVE_DUPLICATES libs)
  if(libs)
    target_link_libraries(kelvor2d PUBLIC ${libs})
  endif()
endfunction()

# kelvor2d_add_test_suite(<name> COMPONENTS <components...> SOURCES <files...> [LIBS <targets...>])
# One GoogleTest executable; every test case runs in a process of its own.
function(kelvor2d_add_test_suite name)
  cmake_parse_arguments(ARG "" "" "COMPONENTS;SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  foreach(sub IN LISTS ARG_COMPONENTS)
    target_link_libraries(${name} PRIVATE kelvor2d_${sub})
  endforeach()
  target_link_libraries(${name} PRIVATE GTest::gtest GTest::gtest_main ${ARG_LIBS})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  kelvor2d_apply_flags(${name})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
endfunction()

function(kelvor2d_install)
  include(CMakePackageConfigHelpers)
  set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvor2D)
  install(TARGETS kelvor2d EXPORT Kelvor2DTargets
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/kelvor2d.h ${KELVOR2D_EXPORT_HEADER}
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvor2d)
  foreach(dir IN LISTS KELVOR2D_SUBSYSTEM_DIRS)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${dir}/CMakeLists.txt)
      install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvor2d/${dir}
              FILES_MATCHING PATTERN "*.h")
    endif()
  endforeach()
  install(EXPORT Kelvor2DTargets NAMESPACE Kelvor2D:: DESTINATION ${config_dir})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/Kelvor2DConfig.cmake.in
                                ${PROJECT_BINARY_DIR}/Kelvor2DConfig.cmake INSTALL_DESTINATION ${config_dir})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/Kelvor2DConfigVersion.cmake
                                   COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/Kelvor2DConfig.cmake ${PROJECT_BINARY_DIR}/Kelvor2DConfigVersion.cmake
          DESTINATION ${config_dir})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/kelvor2d.pc.in ${PROJECT_BINARY_DIR}/kelvor2d.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/kelvor2d.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
