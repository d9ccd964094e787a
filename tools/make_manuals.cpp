// Makes the manuals of a program folder from their sources; run by the build.

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <array>
#include <cstdio>

namespace {

constexpr std::array manuals = {"man731", "man752", "mansw"};

int fail(const char *what, const QString &path, const QString &why)
{
    std::fprintf(stderr, "kor-make-manuals: cannot %s %s: %s\n", what, qPrintable(QDir::toNativeSeparators(path)),
                 qPrintable(why));
    return 1;
}

/// Spaces headings and commands; Qt's own spacing lets a heading stick to the command above it.
void space(QTextDocument &document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.headingLevel() == 1) {
            format.setTopMargin(0);
            format.setBottomMargin(12);
        } else if (format.headingLevel() > 1) {
            format.setTopMargin(16);
            format.setBottomMargin(6);
        } else if (format.hasProperty(QTextFormat::BlockCodeLanguage)) {
            format.setIndent(1);
            format.setTopMargin(4);
            format.setBottomMargin(8);
        } else {
            continue;
        }
        QTextCursor(block).setBlockFormat(format);
    }
}

/// Markdown knows no page break: a rule across the page ("---") stands for one.
void breakPagesAtRules(QTextDocument &document)
{
    QTextBlock block = document.begin();
    while (block.isValid()) {
        const QTextBlock next = block.next();
        if (!block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth) || !next.isValid()) {
            block = next;
            continue;
        }
        QTextBlockFormat format = next.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor cursor(block);
        cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        // Taking the rule away hands its format to the block that follows, so this one's is set last.
        cursor.setBlockFormat(format);
        block = cursor.block().next();
    }
}

QByteArray printed(const QString &markdown)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(600);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(25, 22, 25, 18), QPageLayout::Millimeter);
    writer.setCreator(QStringLiteral("Kor supervisor"));

    QTextDocument document;
    QFont font;
    font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif")});
    font.setPointSizeF(10.5);
    document.setDefaultFont(font);
    document.documentLayout()->setPaintDevice(&writer);
    document.setMarkdown(markdown);
    document.setDocumentMargin(0);
    document.setIndentWidth(24);
    space(document);
    breakPagesAtRules(document);
    writer.setTitle(document.begin().text());

    // The page number stands in a strip at the foot of the printable area.
    const qreal width = writer.width(), strip = writer.logicalDpiY() / 2.0, height = writer.height() - strip;
    document.setPageSize(QSizeF(width, height));
    QPainter painter(&writer);
    const int pages = document.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            writer.newPage();
        painter.save();
        painter.translate(0, -page * height);
        document.drawContents(&painter, QRectF(0, page * height, width, height));
        painter.restore();
        painter.setFont(font);
        painter.drawText(QRectF(0, height, width, strip), Qt::AlignHCenter | Qt::AlignBottom,
                         QStringLiteral("%1 / %2").arg(page + 1).arg(pages));
    }
    painter.end();
    return bytes;
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QGuiApplication application(argumentCount, arguments);
    if (argumentCount != 3) {
        std::fputs("usage: kor-make-manuals <source folder> <target folder Istruzioni>\n", stderr);
        return 2;
    }
    const QDir sources(QString::fromLocal8Bit(arguments[1])), targets(QString::fromLocal8Bit(arguments[2]));
    for (const char *manual : manuals) {
        QFile source(sources.filePath(QLatin1String(manual) + QStringLiteral(".md")));
        if (!source.open(QIODevice::ReadOnly))
            return fail("read", source.fileName(), source.errorString());
        const QString markdown = QString::fromUtf8(source.readAll());
        if (markdown.trimmed().isEmpty())
            return fail("read", source.fileName(), QStringLiteral("nothing stands in it"));
        const QByteArray bytes = printed(markdown);
        QSaveFile target(targets.filePath(QLatin1String(manual) + QStringLiteral(".pdf")));
        if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.commit())
            return fail("write", target.fileName(), target.errorString());
    }
    return 0;
}
