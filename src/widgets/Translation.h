#pragma once

#include <QTranslator>

/// Standard buttons, file dialogs and editing menus of the widget library in the program's language.
class Translation
{
public:
    Translation() = default;
    ~Translation();
    Translation(const Translation &) = delete;
    Translation &operator=(const Translation &) = delete;

    /// @param language  1 Italian, 2 English, 3 French, 4 German
    void apply(int language);

private:
    QTranslator m_translator;
};
