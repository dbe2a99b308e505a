# velmora_room(NAME LINKS...): a static library of every source in the current folder; includes are paths from the root.
function(velmora_room name)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()

# share_header(TARGET NAME): has TARGET start every file from the compiled precompiled/NAME.h.
function(share_header target name)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_precompile_headers(${target} REUSE_FROM Precompiled${name})
  endif()
endfunction()

# velmora_view(NAME LINKS...): a room that shows the application model.
function(velmora_view name)
  velmora_room(${name} VelmoraModel VelmoraTheme ${ARGN} Qt6::Widgets)
  share_header(${name} Studio)
endfunction()

# velmora_test(NAME [THREADS] LINKS...): one test program of every source in the current folder. THREADS marks what runs
# under ThreadSanitizer too. Qt isn't instrumented there, so that whatever crosses by its queues would look like a race:
# suites named *Worker*, *Loader* or *Exporter* stay out.
add_custom_target(ThreadTests)
function(velmora_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "THREADS" "" "")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${arg_UNPARSED_ARGUMENTS} GTest::gmock_main rapidcheck)
  set(filter "")
  if(VELMORA_SANITIZE STREQUAL "thread")
    set(filter "--gtest_filter=-*Worker*:*Loader*:*Exporter*")
  endif()
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1 ${filter})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  if(arg_THREADS)
    set_tests_properties(${name} PROPERTIES LABELS threads)
    add_dependencies(ThreadTests ${name})
  endif()
endfunction()

# Qt tells every test its own folders by definitions, which would keep tests from sharing a header. None reads them.
# The same goes for the network, which <QTest> looks for.
set(without_test_paths -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR -UQT_NETWORK_LIB)

# velmora_view_test(NAME LINKS...): a test program that drives views.
function(velmora_view_test name)
  velmora_test(${name} ${ARGN} ViewTestMain TestSupport Qt6::Test)
  target_compile_options(${name} PRIVATE ${without_test_paths})
  share_header(${name} StudioTests)
endfunction()
