# Assembles the ready program folder <build>/kor: programs, archive templates, pictures, manuals.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)

set(KOR_FOLDER ${CMAKE_BINARY_DIR}/kor)
set_target_properties(kor-supervisor kor-simulator kor-archive PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${KOR_FOLDER})

add_executable(kor-make-templates tools/make_templates.cpp)
target_link_libraries(kor-make-templates PRIVATE kor_core kor_headers kor_flags)

# It works with the windows themselves: only what it takes from them anew makes the manuals anew.
add_executable(kor-make-window-pictures tools/make_window_pictures.cpp tools/PictureDesk.cpp tools/PictureDesk.h)
set_property(TARGET kor-make-window-pictures PROPERTY AUTOMOC ON)
target_link_libraries(kor-make-window-pictures PRIVATE kor_desktop kor_simulator kor_headers kor_flags)

# The two below do without the core: a change of the core alone makes no picture and no manual anew.
add_executable(kor-make-pictures tools/make_pictures.cpp)
target_link_libraries(kor-make-pictures PRIVATE Qt6::Gui Qt6::Svg kor_flags)

# The toolkit's PDF writer makes no table of contents. Clang takes this library's headers in no later language; its older
# pointers are not used.
pkg_check_modules(QPDF REQUIRED IMPORTED_TARGET libqpdf)
add_library(kor_pdf_contents STATIC tools/PdfContents.cpp tools/PdfContents.h)
set_target_properties(kor_pdf_contents PROPERTIES CXX_STANDARD 17)
target_compile_definitions(kor_pdf_contents PRIVATE POINTERHOLDER_TRANSITION=4)
target_link_libraries(kor_pdf_contents PUBLIC Qt6::Gui PRIVATE PkgConfig::QPDF kor_flags)

add_executable(kor-make-manuals tools/make_manuals.cpp tools/ManualPages.cpp tools/ManualPages.h tools/ManualText.cpp
    tools/ManualText.h tools/PageBreaks.cpp tools/PageBreaks.h)
target_link_libraries(kor-make-manuals PRIVATE kor_pdf_contents kor_flags)

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

# The tool writes a picture, and the list of all, only when it has become another.
set(KOR_WINDOW_PICTURES ${CMAKE_BINARY_DIR}/manual-pictures)
add_custom_command(OUTPUT ${KOR_WINDOW_PICTURES}/list.txt
    COMMAND ${CMAKE_COMMAND} -E make_directory ${KOR_WINDOW_PICTURES}
    COMMAND ${KOR_WITHOUT_SCREEN} $<TARGET_FILE:kor-make-window-pictures> ${KOR_FOLDER} ${KOR_WINDOW_PICTURES}
    DEPENDS kor-make-window-pictures ${KOR_TEMPLATES} ${KOR_PICTURES}
    COMMENT "Taking the pictures of the windows"
    VERBATIM)

set(KOR_MANUALS man731 man752 mansw mansw_en mansw_fr mansw_de)
list(TRANSFORM KOR_MANUALS REPLACE "(.+)" "${KOR_FOLDER}/Istruzioni/\\1.pdf")
file(GLOB KOR_MANUAL_SOURCES CONFIGURE_DEPENDS assets/manuals/*.md docs/manual.md)
add_custom_command(OUTPUT ${KOR_MANUALS}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${KOR_FOLDER}/Istruzioni
    COMMAND ${KOR_WITHOUT_SCREEN} $<TARGET_FILE:kor-make-manuals> ${PROJECT_SOURCE_DIR} ${KOR_WINDOW_PICTURES}
            ${KOR_FOLDER}/Istruzioni
    DEPENDS kor-make-manuals ${KOR_MANUAL_SOURCES} ${KOR_WINDOW_PICTURES}/list.txt
    COMMENT "Printing the manuals"
    VERBATIM)

add_custom_target(kor_folder ALL DEPENDS ${KOR_TEMPLATES} ${KOR_PICTURES} ${KOR_MANUALS})
