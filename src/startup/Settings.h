#pragma once

#include "platform/Printers.h"
#include "platform/ProgramFolder.h"
#include "startup/Protocol.h"
#include "texts/Notices.h"

#include <QByteArrayList>
#include <QObject>

/// The settings file Impost.stp and the values read from it.
///
/// A line belongs to a key as soon as it holds the key followed by "=". The file is rewritten line by line and changes
/// as a whole: a power cut leaves the old or the new one. Values are 16-bit numbers.
class Settings : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object.
    Settings(ProgramFolder &folder, const Printers &printers);

    int PortaCom = 0;                            ///< number of the serial port, 0 = none chosen yet
    int Lingua = 0;                              ///< 1 Italian, 2 English, 3 French, 4 German
    int NumEvOd = 0;                             ///< rows of the view of the day's events
    int MinCheck = 0;                            ///< minutes between two link checks, 0 or less = no checks
    int IndStampante = 0;                        ///< index of the chosen printer, -1 = none
    Protocol CodProtocollo = Protocol::NotKnown; ///< of the interface, as it last told it

    /// Name of the file, below the program folder.
    static QString fileName();
    bool fileExists() const;

    /// Value of @p key without blanks at its ends; "" when no line has it or the file cannot be read.
    QString LeggiImpostazione(const QString &key) const;
    /// CodProtocollo as the file has it now.
    Protocol storedProtocol() const;
    /// Lingua as the file has it now; @p otherwise where it has none that can be used.
    int storedLanguage(int otherwise) const;
    /// Makes @p line the entry of @p key: in the place of every line that has the key, else as the last.
    Result<void> ScriviImpostazione(const QString &key, const QString &line);
    /// Writes the file anew with the defaults.
    Result<void> CreaImpostazioni(int language);
    int IndiceStampanteDefault() const { return m_printers.listAtOnce().defaultIndex(); }

    /// Shorthand for ScriviImpostazione(key, key=value).
    Result<void> save(const QString &key, int value);

    /// Fills the values from the file. What is missing, but for PRTC, has the value that the first start would write; a
    /// COM or LINGUA that cannot be used likewise. Each is reported, and the file stays as it is until the operator
    /// chooses.
    /// @return why the file cannot be read though it is there; TooLarge past 64 KiB
    Result<void> read(int systemLanguage, Notices &notices);

Q_SIGNALS:
    /// An entry of the file has another value now.
    void changed(const QString &key, const QString &value);

private:
    Result<QByteArrayList> lines() const;
    QByteArrayList currentLines() const;
    std::optional<QString> entry(const QString &key) const;
    int lenient(const QString &key, int initial, Notices &notices) const;

    ProgramFolder &m_folder;
    const Printers &m_printers;
};
