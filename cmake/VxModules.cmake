include(GoogleTest)

# Every source folder is one object module. The shared libraries are made of whole modules, and a
# test program links exactly the modules it exercises, so a folder can be built and tested on its own.
function(vx_module name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
  if(NOT sources)
    set(sources ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
  endif()
  add_library(${name} OBJECT ${sources})
  # The shared libraries show only what is marked VX_EXPORT (platform/rtl/VXExport.h).
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()

# A shared library made of whole modules (its first argument after the name lists the modules,
# LIBS the libraries it stands on).
function(vx_shared_library name)
  cmake_parse_arguments(ARG "" "" "MODULES;LIBS" ${ARGN})
  add_library(${name} SHARED)
  add_library(vxsvg::${name} ALIAS ${name})
  target_compile_features(${name} PUBLIC cxx_std_20)
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${name} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vxsvg>)
  foreach(module IN LISTS ARG_MODULES)
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${module}>)
    target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:${module}>)
  endforeach()
  target_link_libraries(${name} PUBLIC ${ARG_LIBS})
endfunction()

# One GoogleTest program per test folder, linked against the modules or libraries it exercises.
# VX_TEST_SUPPORT names another entry point library (the widget tests need a QApplication);
# VX_TEST_PROPERTIES adds test properties (such as an environment) to every test case of the program.
function(vx_test name folder)
  if(NOT VX_TEST_SUPPORT)
    set(VX_TEST_SUPPORT vxtestsupport)
  endif()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${VX_TEST_SUPPORT} GTest::gtest ${ARGN})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  # Each test case is a test of its own, so that ctest lists and reruns them one by one. The test
  # main finds the data folders and the headless platform itself; VX_TEST_ENVIRONMENT may name one
  # more variable.
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 600 LABELS ${name} ENVIRONMENT "${VX_TEST_ENVIRONMENT}")
endfunction()
