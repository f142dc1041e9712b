#include "platform/agent/character/DrawingCheck.h"
#include "SmallCharacter.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray svg(const QByteArray &inside)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 10 10\">\n" + inside + "\n</svg>";
}

} // namespace

TEST(Drawing, ItsTopGroupsAreItsPicturesInOrder)
{
    const QByteArray drawing = svg("<title>Two &amp; one</title><g id=\"back\"><g id=\"inner\"/></g><g id=\"front.1\">"
                                   "<path d=\"M0.1234567 -12.5C1 2 3 4 5 6Z\" transform=\"rotate(5 1 1)\"/></g>");
    EXPECT_EQ(agent::checkedPictures(drawing), QStringList({ u"back"_s, u"front.1"_s }));
}

TEST(Drawing, WhatCouldHarmOrWouldNotShowIsRefusedWithItsLine)
{
    const struct {
        QByteArray drawing;
        const char *says;
    } faults[] = {
        { "", "line 1" },
        { "plain text", "line 1" },
        { "<html/>", "<html> may not" },
        { svg("<g id=\"a\">"), "line 3" },
        { svg("<image href=\"file:///etc/passwd\"/>"), "<image>" },
        { svg("<script>x</script>"), "<script>" },
        { svg("<style>g{}</style>"), "<style>" },
        { svg("<text>x</text>"), "<text>" },
        { svg("<g id=\"a\"><use href=\"#a\"/></g>"), "<use>" },
        { svg("<g id=\"a\"><animate/></g>"), "<animate>" },
        { svg("<g id=\"a\"><svg/></g>"), "<svg>" },
        { svg("<g id=\"a\"><path d=\"M0 0\" style=\"fill:red\"/></g>"), "style" },
        { svg("<g id=\"a\" onclick=\"x()\"/>"), "onclick" },
        { svg("<g id=\"a\"><path stroke-dasharray=\"0.0001\"/></g>"), "stroke-dasharray" },
        { svg("<g id=\"a\"><path fill=\"url(http://a.example/b)\"/></g>"), "value of fill" },
        { svg("<g id=\"a\"><path fill=\"url(#none)\"/></g>"), "no gradient none" },
        { svg("<defs><linearGradient id=\"a\" xlink:href=\"#a\"/></defs>"), "line 2" },
        { svg("<defs><radialGradient id=\"a\" cx=\"1\" cy=\"1\"/></defs>"), "has no r" },
        { svg("<g id=\"a\"><path d=\"M0 0L999999 0\"/></g>"), "numbers of d" },
        { svg("<g id=\"a\"><path d=\"M0 0L1e9 0\"/></g>"), "numbers of d" },
        { svg("<g id=\"a\"><circle r=\"1000000\"/></g>"), "numbers of r" },
        { svg("<g/>"), "has no id" },
        { svg("<g id=\"a\" transform=\"scale(2)\"/>"), "transformation" },
        { svg("<g id=\"a\"/><g id=\"a\"/>"), "stands twice" },
        { svg("<g id=\"a b\"/>"), "value of id" },
        { svg("<g id=\"a\">" + QByteArray("<g>").repeated(40) + QByteArray("</g>").repeated(40) + "</g>"), "too many" },
        { svg("<g id=\"a\">" + QByteArray("<path/>").repeated(6000) + "</g>"), "too many" },
        { "<?xml-stylesheet href=\"a\"?>" + svg(""), "plain elements" },
        { "<!DOCTYPE svg [<!ENTITY a \"b\">]>" + svg("<title>&a;</title>"), "plain elements" },
        { "<!DOCTYPE svg SYSTEM \"http://a.example/b.dtd\">" + svg(""), "plain elements" },
    };
    for (const auto &fault : faults) {
        const auto error = refusal([&] { agent::checkedPictures(fault.drawing); });
        ASSERT_TRUE(error) << fault.drawing.constData();
        EXPECT_EQ(error->number(), agent::ErrorNumber::BadData);
        EXPECT_TRUE(error->text().contains(QLatin1StringView(fault.says)))
            << qPrintable(error->text()) << " instead of " << fault.says;
    }
}
