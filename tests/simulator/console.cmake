house_test(consolescripttest SOURCES consolescripttest.cpp LIBRARIES simulator)
house_test(consoleprocesstest DEVICE
    SOURCES consoleprocesstest.cpp coreserviceclient.cpp coreserviceclient.h
    LIBRARIES simulator)
target_compile_definitions(consoleprocesstest PRIVATE PANEL_SIMULATOR="$<TARGET_FILE:panel-simulator>")
add_dependencies(consoleprocesstest panel-simulator)

if(TARGET front-panel)
    if(HOUSE_OWN_NETWORK)
        add_test(NAME consoledemotest
            COMMAND ${PROJECT_SOURCE_DIR}/tests/support/own-network $<TARGET_FILE:panel-simulator> --demo)
    else()
        add_test(NAME consoledemotest COMMAND panel-simulator --demo)
        set_tests_properties(consoledemotest PROPERTIES RESOURCE_LOCK port6107)
    endif()
    set_tests_properties(consoledemotest PROPERTIES TIMEOUT 300)
endif()
