#include "widgets/Messages.h"

#include "widgets/Twips.h"

#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>

namespace {

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox *makeBox(QWidget *over, Icon icon, const QString &title, const QString &text,
                     QMessageBox::StandardButtons buttons)
{
    auto *box = new QMessageBox(boxIcon(icon), title, QString(), buttons, over);
    box->setObjectName(QStringLiteral("MsgBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    // Names of users and files are shown as they are written.
    box->setTextFormat(Qt::PlainText);
    box->setText(QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    // A short message must not cut the title, which stands between the buttons of the frame.
    if (auto *grid = qobject_cast<QGridLayout *>(box->layout())) {
        const int width = box->fontMetrics().horizontalAdvance(title) + pixels(2250);
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
    }
    return box;
}

} // namespace

void Messages::show(QWidget *over, Icon icon, const QString &text, std::function<void()> then)
{
    QMessageBox *box = makeBox(over, icon, m_title, text, QMessageBox::Ok);
    if (then)
        QObject::connect(box, &QMessageBox::finished, over, [then = std::move(then)] { then(); });
    box->open();
}

void Messages::ask(QWidget *over, const QString &text, Buttons buttons, std::function<void(Answer)> then)
{
    QMessageBox::StandardButtons shown = QMessageBox::Yes | QMessageBox::No;
    if (buttons == Buttons::YesNoCancel)
        shown |= QMessageBox::Cancel;
    QMessageBox *box = makeBox(over, Icon::Question, m_title, text, shown);
    box->setDefaultButton(buttons == Buttons::YesNo ? QMessageBox::No : QMessageBox::Yes);
    box->setEscapeButton(buttons == Buttons::YesNoCancel ? QMessageBox::Cancel : QMessageBox::No);
    QObject::connect(box, &QMessageBox::finished, over, [then = std::move(then), buttons](int result) {
        if (result == QMessageBox::Yes)
            then(Answer::Yes);
        else if (result == QMessageBox::No || buttons == Buttons::YesNo)
            then(Answer::No);
        else
            then(Answer::Cancel);
    });
    box->open();
}

void Messages::choose(QWidget *over, const QString &text, const QString &first, const QString &second,
                      std::function<void(bool)> then)
{
    QMessageBox *box = makeBox(over, Icon::Question, m_title, text, QMessageBox::NoButton);
    QPushButton *usual = box->addButton(first, QMessageBox::AcceptRole);
    const QPushButton *other = box->addButton(second, QMessageBox::RejectRole);
    box->setDefaultButton(usual);
    box->setEscapeButton(usual);
    QObject::connect(box, &QMessageBox::finished, over,
                     [then = std::move(then), box, other] { then(box->clickedButton() == other); });
    box->open();
}
