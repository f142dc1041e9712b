#include "platform/agent/character/DrawingCheck.h"

#include "platform/agent/Agent.h"

#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kMaxElements = 5000;
constexpr int kMaxDepth = 16;
constexpr int kMaxPictures = 500;

const QSet<QString> kElements = { u"svg"_s, u"g"_s, u"path"_s, u"circle"_s, u"ellipse"_s, u"rect"_s, u"line"_s,
    u"polyline"_s, u"polygon"_s, u"defs"_s, u"linearGradient"_s, u"radialGradient"_s, u"stop"_s, u"title"_s,
    u"desc"_s };

const QSet<QString> kNumeric = { u"d"_s, u"points"_s, u"transform"_s, u"gradientTransform"_s, u"x"_s, u"y"_s,
    u"x1"_s, u"y1"_s, u"x2"_s, u"y2"_s, u"cx"_s, u"cy"_s, u"r"_s, u"rx"_s, u"ry"_s, u"fx"_s, u"fy"_s, u"width"_s,
    u"height"_s, u"viewBox"_s, u"offset"_s, u"opacity"_s, u"fill-opacity"_s, u"stroke-opacity"_s, u"stop-opacity"_s,
    u"stroke-width"_s, u"stroke-miterlimit"_s };

const QSet<QString> kWords = { u"id"_s, u"fill"_s, u"stroke"_s, u"stop-color"_s, u"color"_s, u"fill-rule"_s,
    u"stroke-linecap"_s, u"stroke-linejoin"_s, u"gradientUnits"_s, u"spreadMethod"_s, u"version"_s,
    u"baseProfile"_s };

/** Walks through a drawing once and keeps count. */
class Check
{
public:
    explicit Check(const QByteArray &svg)
        : m_xml(svg)
    {
    }

    QStringList run()
    {
        while (!m_xml.atEnd())
            step(m_xml.readNext());
        if (m_xml.hasError())
            fail(m_xml.errorString());
        for (const QString &gradient : std::as_const(m_wanted)) {
            if (!m_ids.contains(gradient))
                fail(u"there is no gradient %1"_s.arg(gradient));
        }
        return m_pictures;
    }

private:
    [[noreturn]] void fail(const QString &why) const
    {
        throw Error(ErrorNumber::BadData,
                    u"The character file is damaged: line %1 of its drawing: %2."_s.arg(m_xml.lineNumber()).arg(why));
    }

    void step(QXmlStreamReader::TokenType token)
    {
        if (token == QXmlStreamReader::StartElement)
            enter();
        else if (token == QXmlStreamReader::EndElement)
            --m_depth;
        else if (token == QXmlStreamReader::DTD || token == QXmlStreamReader::ProcessingInstruction
                 || token == QXmlStreamReader::EntityReference)
            fail(u"only plain elements may be used"_s);
    }

    void enter()
    {
        const QString name = m_xml.name().toString();
        if (++m_depth > kMaxDepth || ++m_elements > kMaxElements)
            fail(u"there are too many elements"_s);
        if ((m_depth == 1) != (name == "svg"_L1) || !kElements.contains(name))
            fail(u"<%1> may not be used here"_s.arg(name));
        for (const QXmlStreamAttribute &attribute : m_xml.attributes())
            checkAttribute(attribute);
        if (name == "radialGradient"_L1)
            checkCentre();
        const QString id = m_xml.attributes().value("id"_L1).toString();
        if (!id.isEmpty())
            enterId(id);
        if (m_depth == 2 && name == "g"_L1)
            enterPicture(id);
    }

    /** The renderer knows no defaults for these. */
    void checkCentre()
    {
        for (const char *name : { "cx", "cy", "r" }) {
            if (!m_xml.attributes().hasAttribute(QLatin1StringView(name)))
                fail(u"a radial gradient has no %1"_s.arg(QLatin1StringView(name)));
        }
    }

    void enterId(const QString &id)
    {
        if (m_ids.contains(id))
            fail(u"the id %1 stands twice"_s.arg(id));
        m_ids.insert(id);
    }

    void enterPicture(const QString &id)
    {
        if (id.isEmpty())
            fail(u"a group at the top has no id"_s);
        if (m_xml.attributes().hasAttribute("transform"_L1))
            fail(u"the group %1 may not have a transformation of its own"_s.arg(id));
        m_pictures += id;
        if (m_pictures.size() > kMaxPictures)
            fail(u"there are too many groups"_s);
    }

    void checkAttribute(const QXmlStreamAttribute &attribute)
    {
        const QString name = attribute.qualifiedName().toString(), value = attribute.value().toString();
        if (kNumeric.contains(name)) {
            if (isHuge(value))
                fail(u"the numbers of %1 are too large"_s.arg(name));
        } else if (!kWords.contains(name)) {
            fail(u"the attribute %1 may not be used"_s.arg(name));
        } else {
            checkWord(name, value);
        }
    }

    /** Six digits before the point, or an exponent: a shape like that would keep the painter busy for hours. */
    static bool isHuge(const QString &value)
    {
        static const QRegularExpression huge(u"(?<![0-9.])[0-9]{6,}|[0-9.][eE]"_s);
        return huge.match(value).hasMatch();
    }

    void checkWord(const QString &name, const QString &value)
    {
        static const QRegularExpression plain(u"^[A-Za-z0-9_.#-]*$"_s), gradient(u"^url\\(#([A-Za-z0-9_.-]+)\\)$"_s);
        const QRegularExpressionMatch match = gradient.match(value);
        if (match.hasMatch())
            m_wanted.insert(match.captured(1));
        else if (!plain.match(value).hasMatch())
            fail(u"the value of %1 may not be used"_s.arg(name));
    }

    QXmlStreamReader m_xml;
    QSet<QString> m_ids;
    QSet<QString> m_wanted;
    QStringList m_pictures;
    int m_depth = 0;
    int m_elements = 0;
};

} // namespace

QStringList checkedPictures(const QByteArray &svg) { return Check(svg).run(); }

} // namespace agent
