#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QStringList expectedImages()
{
    QStringList names = { u"kavro2000"_s, u"splash"_s };
    for (int i = 1; i <= 16; ++i)
        names += u"image%1"_s.arg(i, 2, 10, QChar(u'0'));
    for (int i = 1; i <= 6; ++i)
        names += u"event%1"_s.arg(i);
    const char *tools[] = { "monitor", "stop", "refresh", "views", "options", "open", "saveas", "add",
        "properties", "details", "delete", "disable", "expand", "collapse", "listen", "log", "html", "exit", "help",
        "view_large", "view_small", "view_list", "view_details", "restore", "clear", "reset",
        "new", "compact" };
    for (const char *tool : tools)
        names += "tool_"_L1 + QLatin1StringView(tool);
    return names;
}

QString pathOf(const QString &name) { return u":/images/%1.svg"_s.arg(name); }

QImage rendered(const QString &name, int size, QColor background)
{
    QSvgRenderer renderer(pathOf(name));
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, size, size));
    return image;
}

/** Pixels whose brightness differs clearly, that is, which someone without colour vision can tell apart. */
int differingPixels(const QImage &one, const QImage &other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            count += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) > 40;
    return count;
}

int countInked(const QImage &image, QColor background)
{
    QImage empty(image.size(), image.format());
    empty.fill(background);
    return differingPixels(image, empty);
}

} // namespace

TEST(Images, EveryNumberAndCommandHasOne)
{
    QStringList present = QDir(u":/images"_s).entryList({ u"*.svg"_s });
    QStringList expected = expectedImages();
    for (QString &name : expected)
        name += u".svg"_s;
    present.sort();
    expected.sort();
    EXPECT_EQ(present, expected);
}

TEST(Images, RenderAndStayVisibleOnLightAndDark)
{
    for (const QString &name : expectedImages()) {
        EXPECT_TRUE(QSvgRenderer(pathOf(name)).isValid()) << qPrintable(name);
        for (const QColor &background : { QColor(Qt::white), QColor(0x2b, 0x2b, 0x2b) }) {
            const int inked = countInked(rendered(name, 16, background), background);
            EXPECT_GE(inked, 25) << qPrintable(name) << qPrintable(background.name());
        }
    }
}

TEST(Images, StatesOfAKindDifferWithoutColour)
{
    const QList<QStringList> kinds = {
        { u"image02"_s, u"image03"_s, u"image04"_s, u"image12"_s }, // device
        { u"image05"_s, u"image06"_s, u"image07"_s, u"image13"_s }, // check
        { u"image14"_s, u"image15"_s, u"image16"_s },               // group
        { u"image08"_s, u"image09"_s, u"image10"_s },               // tray
        { u"image02"_s, u"image05"_s, u"image14"_s },               // one state, three kinds
        { u"event1"_s, u"event2"_s, u"event3"_s, u"event4"_s, u"event5"_s, u"event6"_s },
    };
    for (const QStringList &kind : kinds)
        for (int i = 0; i < kind.size(); ++i)
            for (int k = i + 1; k < kind.size(); ++k)
                for (const QColor &background : { QColor(Qt::white), QColor(0x2b, 0x2b, 0x2b) })
                    EXPECT_GE(differingPixels(
                                  rendered(kind.at(i), 16, background), rendered(kind.at(k), 16, background)),
                        16)
                        << qPrintable(kind.at(i)) << " and " << qPrintable(kind.at(k));
}

TEST(Images, KeepToWhatTheRendererDraws)
{
    const QList<QByteArray> undrawn
        = { "<filter", "<mask", "<clipPath", "<style", "class=", "<image", "href=" };
    for (const QString &name : expectedImages()) {
        QFile file(pathOf(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        for (const QByteArray &word : undrawn)
            EXPECT_FALSE(text.contains(word)) << qPrintable(name) << word.constData();
    }
}
