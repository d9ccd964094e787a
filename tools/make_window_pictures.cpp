// Takes the pictures of the manuals from the program's own windows, in each language; run by the build.

#include "PictureDesk.h"
#include "texts/LanguageName.h"
#include "widgets/Accessibility.h"
#include "widgets/DesktopStyle.h"

#include <QApplication>
#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPixmap>
#include <QPushButton>
#include <QTableView>

#include <array>
#include <cstdio>

namespace {

/// Pixels of a picture for one of the screen: manuals are printed.
constexpr int scale = 2;
constexpr double inch = 0.0254;
constexpr int pixelsOfScreen = 96; ///< an inch

/// Searches the invented days.
void search(PictureDesk &desk, ChildWindow &window)
{
    window.findChild<QLineEdit *>(QStringLiteral("txtDataOrig"))
        ->setText(desk.clock().date().addDays(-2).toString(QStringLiteral("dd/MM/yyyy")));
    window.findChild<QPushButton *>(QStringLiteral("cmdRicerca"))->click();
}

struct Shot {
    const char *name;  ///< by which the manuals ask for it
    const char *entry; ///< of the menu, that opens the window
    void (*prepare)(PictureDesk &desk, ChildWindow &window) = nullptr;
};

constexpr std::array shots = {
    Shot{"search", "mnuEventi", search}, Shot{"users", "mnuUtenti"},  Shot{"week", "mnuFascieOr"},
    Shot{"holidays", "mnuProgFerie"},    Shot{"backup", "mnuBackup"},
};

/// All that is read in turns has come.
bool isReady(const ChildWindow &window)
{
    const QList<QTableView *> grids = window.findChildren<QTableView *>();
    return window.isEnabled() && std::all_of(grids.begin(), grids.end(), [](const QTableView *grid) {
               return grid->model() && grid->model()->rowCount() > 0;
           });
}

class Album
{
public:
    explicit Album(QString folder) : m_folder(std::move(folder)) {}

    /// Files that are the same stay as they are, so that what is made from them need not be made anew.
    void keep(const QString &name, const QByteArray &bytes)
    {
        const QString path = m_folder + QLatin1Char('/') + name;
        QFile file(path);
        if (file.open(QIODevice::ReadOnly) && file.readAll() == bytes)
            return;
        file.close();
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            giveUp(QStringLiteral("cannot write %1").arg(QDir::toNativeSeparators(path)));
    }

    void take(QWidget &widget, const QString &name)
    {
        // What was asked for to be painted later is painted first.
        QCoreApplication::processEvents();
        QImage image = widget.grab().toImage();
        if (image.isNull() || image.devicePixelRatio() != scale)
            giveUp(QStringLiteral("cannot take %1").arg(name));
        // The picture itself tells its size on the screen.
        image.setDevicePixelRatio(1);
        image.setDotsPerMeterX(qRound(scale * pixelsOfScreen / inch));
        image.setDotsPerMeterY(image.dotsPerMeterX());
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.convertToFormat(QImage::Format_RGB32).save(&buffer, "PNG");
        keep(name, bytes);
        m_digests += QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex() + "  " + name.toUtf8() + '\n';
    }

    void writeList() { keep(QStringLiteral("list.txt"), m_digests); }

private:
    const QString m_folder;
    QByteArray m_digests;
};

void takeAll(PictureDesk &desk, Album &album, const QString &language)
{
    const auto named = [&language](const char *name) {
        return QStringLiteral("%1/%2.png").arg(language, QLatin1String(name));
    };
    for (const Shot &shot : shots) {
        ChildWindow *window = desk.choose(shot.entry);
        if (shot.prepare)
            shot.prepare(desk, *window);
        waitFor([window] { return isReady(*window); }, shot.name);
        album.take(*window->parentWidget(), named(shot.name));
        window->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    const ChildWindow *lastEvents = desk.choose("mnuEventiOdierni");
    waitFor([lastEvents] { return isReady(*lastEvents); }, "main");
    album.take(desk.window(), named("main"));
    desk.raiseAlarm();
    album.take(desk.window(), named("alarm"));
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
    const QApplication application(argumentCount, arguments);
    if (argumentCount != 3) {
        std::fputs("usage: kor-make-window-pictures <program folder with templates and pictures> <target folder>\n",
                   stderr);
        return 2;
    }
    // Nothing of the desktop at hand, and no cursor that blinks.
    QApplication::setStyle(new DesktopStyle);
    QApplication::setPalette(QApplication::style()->standardPalette());
    QApplication::setFont(QFont(QStringLiteral("Liberation Sans"), 10));
    QApplication::setCursorFlashTime(0);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString installation = QString::fromLocal8Bit(arguments[1]), target = QString::fromLocal8Bit(arguments[2]);
    Album album(target);
    for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
        const QString name = languageCode(language);
        QDir().mkpath(target + QLatin1Char('/') + name);
        PictureDesk desk(installation, language);
        takeAll(desk, album, name);
    }
    album.writeList();
    return 0;
}
