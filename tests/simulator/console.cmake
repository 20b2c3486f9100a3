house_test(consoleprocesstest DEVICE SOURCES consoleprocesstest.cpp LIBRARIES simulator)
target_compile_definitions(consoleprocesstest PRIVATE PANEL_SIMULATOR="$<TARGET_FILE:panel-simulator>")
add_dependencies(consoleprocesstest panel-simulator)

if(TARGET front-panel)
    house_command_test(consoledemotest DEVICE COMMAND $<TARGET_FILE:panel-simulator> --demo)
endif()
