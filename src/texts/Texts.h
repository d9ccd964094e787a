#pragma once

#include "platform/Result.h"
#include "texts/Text.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

enum class OwnText : int;

/// How grave a message is; a window shows it as the icon of its message box.
enum class Icon { None, Information, Question, Exclamation, Critical };

/// A message before it has words: which text, what stands for its "%1" to "%3", and the fault behind it.
struct Message {
    std::variant<Text, OwnText> text;
    QStringList arguments;
    std::optional<Fault> fault; ///< its reason is added to the sentence
};

/// All texts of the program in its present language.
class Texts
{
public:
    /// Languages are 1 Italian, 2 English, 3 French, 4 German; a table that was never filled speaks Italian.
    static constexpr int FirstLanguage = 1;
    static constexpr int LastLanguage = 4;

    /// @param language  1 to 4; any other number changes nothing
    void fill(int language);
    int language() const { return m_language; }

    QString operator[](Text text) const;
    QString operator[](OwnText text) const;
    QString sentence(const Message &message) const;

private:
    int m_language = FirstLanguage;
};
