# Assembles the ready program folder <build>/kor: programs, archive templates, pictures, manuals.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)

set(KOR_FOLDER ${CMAKE_BINARY_DIR}/kor)
set_target_properties(kor-supervisor kor-simulator kor-archive PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${KOR_FOLDER})

add_executable(kor-make-templates tools/make_templates.cpp)
target_link_libraries(kor-make-templates PRIVATE kor_core kor_headers kor_flags)

# The two below do without the core: a change of the core then makes no picture and no manual anew.
add_executable(kor-make-pictures tools/make_pictures.cpp)
target_link_libraries(kor-make-pictures PRIVATE Qt6::Gui Qt6::Svg kor_flags)

add_executable(kor-make-manuals tools/make_manuals.cpp)
target_link_libraries(kor-make-manuals PRIVATE Qt6::Gui kor_flags)

# The tools draw without a screen. What font libraries keep until the end is no leak of ours.
set(KOR_WITHOUT_SCREEN ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0)

# The templates are made once and left alone: a folder in use keeps the archives that were copied from them. The tool
# skips those that exist, so they are touched for the build to see them as up to date.
set(KOR_TEMPLATES Anagraficoorg Fascieorg Ferieorg Eventiorg Eventitmp)
list(TRANSFORM KOR_TEMPLATES REPLACE "(.+)" "${KOR_FOLDER}/Archivi/\\1.zeb")
add_custom_command(OUTPUT ${KOR_TEMPLATES}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${KOR_FOLDER}/Archivi
    COMMAND kor-make-templates ${KOR_FOLDER}/Archivi
    COMMAND ${CMAKE_COMMAND} -E touch ${KOR_TEMPLATES}
    DEPENDS kor-make-templates
    COMMENT "Making the archive templates"
    VERBATIM)

set(KOR_PICTURE_SOURCES Led_V Led_R Led_G Time_En Time_Dis Warning Splash Icon)
list(TRANSFORM KOR_PICTURE_SOURCES REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/assets/pictures/\\1.svg")
set(KOR_PICTURES Led_V.bmp Led_R.bmp Led_G.bmp Time_En.bmp Time_Dis.bmp Warning.bmp Splash.bmp Icon.png)
list(TRANSFORM KOR_PICTURES PREPEND ${KOR_FOLDER}/Immagini/)
# Those of the desktop are for the installation alone.
set(KOR_ICON_SIZES 16 22 24 32 48 64 128 256)
set(KOR_ICON_FOLDER ${CMAKE_BINARY_DIR}/icons)
set(KOR_ICONS ${KOR_ICON_SIZES})
list(TRANSFORM KOR_ICONS REPLACE "(.+)" "${KOR_ICON_FOLDER}/\\1.png")
add_custom_command(OUTPUT ${KOR_PICTURES} ${KOR_ICONS}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${KOR_FOLDER}/Immagini ${KOR_ICON_FOLDER}
    COMMAND ${KOR_WITHOUT_SCREEN} $<TARGET_FILE:kor-make-pictures> ${PROJECT_SOURCE_DIR}/assets/pictures
            ${KOR_FOLDER}/Immagini ${KOR_ICON_FOLDER}
    DEPENDS kor-make-pictures ${KOR_PICTURE_SOURCES}
    COMMENT "Drawing the pictures"
    VERBATIM)

set(KOR_MANUALS man731 man752 mansw)
set(KOR_MANUAL_SOURCES ${KOR_MANUALS})
list(TRANSFORM KOR_MANUAL_SOURCES REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/assets/manuals/\\1.md")
list(TRANSFORM KOR_MANUALS REPLACE "(.+)" "${KOR_FOLDER}/Istruzioni/\\1.pdf")
add_custom_command(OUTPUT ${KOR_MANUALS}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${KOR_FOLDER}/Istruzioni
    COMMAND ${KOR_WITHOUT_SCREEN} $<TARGET_FILE:kor-make-manuals> ${PROJECT_SOURCE_DIR}/assets/manuals
            ${KOR_FOLDER}/Istruzioni
    DEPENDS kor-make-manuals ${KOR_MANUAL_SOURCES}
    COMMENT "Printing the manuals"
    VERBATIM)

add_custom_target(kor_folder ALL DEPENDS ${KOR_TEMPLATES} ${KOR_PICTURES} ${KOR_MANUALS})
