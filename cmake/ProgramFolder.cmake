# Assembles the ready program folder <build>/kor: programs, archive templates, pictures, manuals.
set(KOR_FOLDER ${CMAKE_BINARY_DIR}/kor)
set_target_properties(kor-supervisor kor-simulator PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${KOR_FOLDER})

add_executable(kor-make-templates tools/make_templates.cpp)
target_link_libraries(kor-make-templates PRIVATE kor_core kor_flags)

# The templates are made once and left alone: a folder in use keeps the archives that were copied from them.
add_custom_command(OUTPUT ${KOR_FOLDER}/Archivi/Eventitmp.zeb
    COMMAND ${CMAKE_COMMAND} -E make_directory ${KOR_FOLDER}/Archivi ${KOR_FOLDER}/Immagini ${KOR_FOLDER}/Istruzioni
    COMMAND kor-make-templates ${KOR_FOLDER}/Archivi
    DEPENDS kor-make-templates
    COMMENT "Making the archive templates")
add_custom_target(kor_folder ALL DEPENDS ${KOR_FOLDER}/Archivi/Eventitmp.zeb)
