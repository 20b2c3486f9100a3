# What every room of the house shares: include root, warnings, and how a test is declared.

include_directories(${PROJECT_SOURCE_DIR})

add_library(house_warnings INTERFACE)
target_compile_options(house_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${HOUSE_WERROR}>:-Werror>)
# A call that Qt 6.4 deprecates does not compile.
target_compile_definitions(house_warnings INTERFACE QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# A test that needs port 6107 or the device's own address gets a network namespace to itself. Where the
# kernel refuses one, such tests take turns instead.
if(NOT DEFINED HOUSE_OWN_NETWORK)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tests/support/own-network true
                    RESULT_VARIABLE refused OUTPUT_QUIET ERROR_QUIET)
    if(refused EQUAL 0)
        set(HOUSE_OWN_NETWORK ON CACHE BOOL "Tests that need port 6107 run in a network namespace each")
    else()
        set(HOUSE_OWN_NETWORK OFF CACHE BOOL "Tests that need port 6107 run in a network namespace each")
    endif()
endif()

# house_command_test(NAME [DEVICE] COMMAND word... [LABELS label...])
# DEVICE: the test occupies port 6107.
function(house_command_test name)
    cmake_parse_arguments(TEST "DEVICE" "" "COMMAND;LABELS" ${ARGN})
    if(TEST_DEVICE AND HOUSE_OWN_NETWORK)
        list(PREPEND TEST_COMMAND ${PROJECT_SOURCE_DIR}/tests/support/own-network)
    endif()
    add_test(NAME ${name} COMMAND ${TEST_COMMAND})
    if(TEST_DEVICE AND NOT HOUSE_OWN_NETWORK)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK port6107)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS "${TEST_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.supp")
endfunction()

# house_test(NAME [DEVICE] SOURCES file... LIBRARIES lib... [LABELS label...])
function(house_test name)
    cmake_parse_arguments(TEST "DEVICE" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} Qt6::Test house_warnings)
    if(TEST_DEVICE)
        set(device DEVICE)
    endif()
    house_command_test(${name} ${device} COMMAND $<TARGET_FILE:${name}> LABELS ${TEST_LABELS})
endfunction()
