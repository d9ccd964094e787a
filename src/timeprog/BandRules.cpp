#include "timeprog/BandRules.h"

#include "archives/Tables.h"
#include "texts/DateTimeText.h"

namespace {

const QString marked = QStringLiteral("X");
const QString notMarked = QStringLiteral(" ");
constexpr int workDays = 5;

} // namespace

CopyEditor::Source bandSource()
{
    return {QStringView(ArchiveName::Bands).toString(), QStringLiteral("Archivi/Fascie.$$$"),
            QStringLiteral("SELECT * FROM Fascie ORDER BY Da")};
}

const QStringList &dayFields()
{
    static const QStringList fields = {
        QStringLiteral("Lunedi"),  QStringLiteral("Martedi"), QStringLiteral("Mercoledi"), QStringLiteral("Giovedi"),
        QStringLiteral("Venerdi"), QStringLiteral("Sabato"),  QStringLiteral("Domenica")};
    return fields;
}

BandFault checkBand(const QString &Da, const QString &A)
{
    if (Da.isEmpty() || A.isEmpty())
        return BandFault::Incomplete;
    if (!OraBreveValida(Da))
        return BandFault::DaFormat;
    if (!OraBreveValida(A))
        return BandFault::AFormat;
    return shortTimeOf(Da) <= shortTimeOf(A) ? BandFault::None : BandFault::Order;
}

RecordSet::Values newBand(const QString &Da, const QString &A)
{
    RecordSet::Values values = bandTimes(Da, A);
    for (int day = 0; day < dayFields().size(); ++day)
        values.insert(dayFields()[day], day < workDays ? marked : notMarked);
    return values;
}

RecordSet::Values bandTimes(const QString &Da, const QString &A)
{
    return {{QStringLiteral("Da"), Da}, {QStringLiteral("A"), A}};
}

QList<Band> bandsOf(const RecordSet &set)
{
    const int Da = set.column(QStringLiteral("Da"));
    const int A = set.column(QStringLiteral("A"));
    QList<Band> bands;
    for (qsizetype row = 0; row < set.recordCount(); ++row) {
        Band band;
        for (int day = 0; day < Band::Days; ++day)
            band.marks.at(static_cast<size_t>(day)) = isMarked(set.value(row, day));
        band.Da = shortTimeOf(set.value(row, Da));
        band.A = shortTimeOf(set.value(row, A));
        bands.append(band);
    }
    return bands;
}

bool isMarked(const QString &mark)
{
    return mark == marked;
}

RecordSet::Values toggledDay(int day, const QString &mark)
{
    return {{dayFields()[day], isMarked(mark) ? notMarked : marked}};
}
