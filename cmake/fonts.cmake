# The panel's five font files, qt-base/font/*.ttf in the build folder, made from Debian's stock fonts.

set(HOUSE_FONT_FOLDER ${PROJECT_BINARY_DIR}/qt-base/font)

# Debian's own python3: python3-fonttools is installed for that one and no other.
find_program(HOUSE_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(HOUSE_PYTHON)
    execute_process(COMMAND ${HOUSE_PYTHON} -c "import fontTools" RESULT_VARIABLE failed ERROR_QUIET)
endif()
if(NOT HOUSE_PYTHON OR NOT failed EQUAL 0)
    message(FATAL_ERROR "The fonts cannot be made: install the package python3-fonttools")
endif()

# house_font(OUTPUT FAMILY STOCK-FILE PACKAGE [option...]): OUTPUT.ttf is the regular face of FAMILY.
function(house_font output family stock package)
    find_file(HOUSE_STOCK_${stock} ${stock}.ttf
              PATHS /usr/share/fonts/truetype/roboto/unhinted/RobotoTTF /usr/share/fonts-font-awesome/fonts
              NO_DEFAULT_PATH)
    if(NOT HOUSE_STOCK_${stock})
        message(FATAL_ERROR "${stock}.ttf is not there: install the package ${package}")
    endif()
    set(script ${PROJECT_SOURCE_DIR}/app/fonts/makefonts.py)
    set(file ${HOUSE_FONT_FOLDER}/${output}.ttf)
    add_custom_command(OUTPUT ${file}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${HOUSE_FONT_FOLDER}
        COMMAND ${HOUSE_PYTHON} ${script} ${ARGN} ${HOUSE_STOCK_${stock}} ${file} ${family}
        DEPENDS ${script} ${HOUSE_STOCK_${stock}}
        COMMENT "Making the font ${family}"
        VERBATIM)
    set_property(GLOBAL APPEND PROPERTY HOUSE_FONTS ${file})
endfunction()

house_font(Roboto-Bold-Ostra    RobotoBold    Roboto-Bold    fonts-roboto-unhinted)
house_font(Roboto-Medium-Ostra  RobotoMedium  Roboto-Medium  fonts-roboto-unhinted)
house_font(Roboto-Regular-Ostra RobotoRegular Roboto-Regular fonts-roboto-unhinted)
house_font(Roboto-Light-Ostra   RobotoLight   Roboto-Light   fonts-roboto-unhinted)
house_font(fontawesome-webfont  FontAwesome   fontawesome-webfont fonts-font-awesome --add-crossed-out-speaker)

get_property(files GLOBAL PROPERTY HOUSE_FONTS)
add_custom_target(fonts ALL DEPENDS ${files})
