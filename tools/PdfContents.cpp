#include "PdfContents.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Object = QPDFObjectHandle;

/// The place of a heading: its page, scrolled to it, in the size at hand.
Object destination(const std::vector<Object> &pages, const PrintedHeading &heading)
{
    Object page = pages.at(static_cast<size_t>(heading.page));
    Object box = page.getKey("/MediaBox");
    const double height = box.getArrayItem(3).getNumericValue();
    Object place = Object::newArray();
    place.appendItem(page);
    place.appendItem(Object::newName("/XYZ"));
    place.appendItem(Object::newInteger(0));
    place.appendItem(Object::newReal(height - heading.y, 2));
    place.appendItem(Object::newNull());
    return place;
}

/// An outline grows by headings in their order: each goes below the last one of a higher level.
class Outline
{
public:
    explicit Outline(QPDF &pdf) : m_pdf(pdf), m_open{{0, pdf.makeIndirectObject(Object::newDictionary()), {}}}
    {
        m_open.front().item.replaceKey("/Type", Object::newName("/Outlines"));
    }

    void add(int level, const QString &title, const Object &place)
    {
        while (m_open.back().level >= level)
            close();
        Object item = m_pdf.makeIndirectObject(Object::newDictionary());
        item.replaceKey("/Title", Object::newUnicodeString(title.toStdString()));
        item.replaceKey("/Dest", place);
        item.replaceKey("/Parent", m_open.back().item);
        m_open.back().below.push_back(item);
        m_open.push_back({level, item, {}});
    }

    Object whole()
    {
        while (m_open.size() > 1)
            close();
        link(m_open.front());
        return m_open.front().item;
    }

private:
    struct Open {
        int level;
        Object item;
        std::vector<Object> below;
    };

    void close()
    {
        link(m_open.back());
        m_open.pop_back();
    }

    static void link(Open &open)
    {
        std::vector<Object> &below = open.below;
        if (below.empty())
            return;
        open.item.replaceKey("/First", below.front());
        open.item.replaceKey("/Last", below.back());
        open.item.replaceKey("/Count", Object::newInteger(static_cast<long long>(below.size())));
        for (size_t i = 1; i < below.size(); ++i) {
            below[i].replaceKey("/Prev", below[i - 1]);
            below[i - 1].replaceKey("/Next", below[i]);
        }
    }

    QPDF &m_pdf;
    std::vector<Open> m_open;
};

/// Turns links of a page to "#number" into such to a heading. @return how many there were
int leadLinks(Object page, const std::vector<Object> &places)
{
    int led = 0;
    Object annotations = page.getKey("/Annots");
    for (int i = 0; annotations.isArray() && i < annotations.getArrayNItems(); ++i) {
        Object link = annotations.getArrayItem(i);
        Object action = link.getKey("/A");
        const std::string target = action.isDictionary() ? action.getKey("/URI").getStringValue() : std::string();
        if (target.rfind('#', 0) != 0)
            continue;
        link.removeKey("/A");
        link.replaceKey("/Dest", places.at(std::stoul(target.substr(1))));
        ++led;
    }
    return led;
}

} // namespace

QByteArray withContents(const PrintedManual &manual, const QByteArray &language)
{
    QPDF pdf;
    pdf.processMemoryFile("manual", manual.pdf.constData(), static_cast<size_t>(manual.pdf.size()));
    const std::vector<Object> pages = pdf.getAllPages();
    // The title of the only part says no more than that of the window.
    const auto isTitle = [](const PrintedHeading &heading) { return heading.level == 1; };
    const bool hasParts = std::count_if(manual.headings.begin(), manual.headings.end(), isTitle) > 1;
    Outline outline(pdf);
    std::vector<Object> places;
    for (const PrintedHeading &heading : manual.headings) {
        const Object place = destination(pages, heading);
        places.push_back(place);
        if (hasParts || !isTitle(heading))
            outline.add(heading.level, heading.text, place);
    }
    int led = 0;
    for (const Object &page : pages)
        led += leadLinks(page, places);
    if (led < manual.links)
        throw std::runtime_error("the writer has not made all links");

    Object root = pdf.getRoot();
    root.replaceKey("/Outlines", outline.whole());
    root.replaceKey("/PageMode", Object::newName("/UseOutlines"));
    if (!language.isEmpty())
        root.replaceKey("/Lang", Object::newString(language.toStdString()));
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setDeterministicID(true);
    writer.write();
    const std::shared_ptr<Buffer> bytes = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(bytes->getBuffer()), static_cast<qsizetype>(bytes->getSize())};
}
