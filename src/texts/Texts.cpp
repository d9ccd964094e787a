#include "texts/Texts.h"

#include "texts/OwnTextTable.h"
#include "texts/TextTable.h"

namespace {

template<typename Name>
QString inLanguage(const TextRow<Name> &row, int language)
{
    switch (language) {
    case 2:
        return QString::fromUtf8(row.english);
    case 3:
        return QString::fromUtf8(row.french);
    case 4:
        return QString::fromUtf8(row.german);
    default:
        return QString::fromUtf8(row.italian);
    }
}

OwnText reason(FaultCode code)
{
    switch (code) {
    case FaultCode::NotFound:
        return OwnText::ReasonNotFound;
    case FaultCode::AccessDenied:
        return OwnText::ReasonAccessDenied;
    case FaultCode::AlreadyInUse:
        return OwnText::ReasonAlreadyInUse;
    case FaultCode::Locked:
        return OwnText::ReasonLocked;
    case FaultCode::DiskFull:
        return OwnText::ReasonDiskFull;
    case FaultCode::Damaged:
        return OwnText::ReasonDamaged;
    case FaultCode::TemplateDamaged:
        return OwnText::ReasonTemplateDamaged;
    case FaultCode::NotRegularFile:
        return OwnText::ReasonNotRegularFile;
    case FaultCode::TooLarge:
        return OwnText::ReasonTooLarge;
    case FaultCode::OwnFolder:
        return OwnText::ReasonOwnFolder;
    case FaultCode::OwnRegister:
        return OwnText::ReasonOwnRegister;
    case FaultCode::NoRegister:
        return OwnText::ReasonNoRegister;
    case FaultCode::NoTable:
        return OwnText::ReasonNoTable;
    case FaultCode::LineTooLong:
        return OwnText::ReasonLineTooLong;
    case FaultCode::NotOpen:
        return OwnText::ReasonNotOpen;
    case FaultCode::InputOutput:
        break;
    }
    return OwnText::ReasonInputOutput;
}

} // namespace

void Texts::fill(int language)
{
    if (language >= FirstLanguage && language <= LastLanguage)
        m_language = language;
}

QString Texts::operator[](Text text) const
{
    return inLanguage(textTable.at(static_cast<size_t>(text)), m_language);
}

QString Texts::operator[](OwnText text) const
{
    return inLanguage(ownTextTable.at(static_cast<size_t>(text)), m_language);
}

QString Texts::sentence(const Message &message) const
{
    QString words = std::visit([this](auto text) { return (*this)[text]; }, message.text);
    // All places are filled in one pass: a file name may hold "%1" itself.
    switch (message.arguments.size()) {
    case 0:
        break;
    case 1:
        words = words.arg(message.arguments[0]);
        break;
    case 2:
        words = words.arg(message.arguments[0], message.arguments[1]);
        break;
    default:
        words = words.arg(message.arguments[0], message.arguments[1], message.arguments[2]);
    }
    if (message.fault)
        words += (*this)[OwnText::Colon] + (*this)[reason(message.fault->code)];
    return words;
}
