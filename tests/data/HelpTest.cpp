// The help: its pages, and the file that is made from them.
#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QDir kData(QStringLiteral(KAVRO_DATA_FOLDER));
const QDir kHelp(kData.filePath(u"help"_s));

QByteArray contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QStringList pages() { return kHelp.entryList({ u"*.html"_s }, QDir::Files); }

/** What the help file is made of. */
QStringList sources()
{
    QStringList files = pages() + kHelp.entryList({ u"*.css"_s }, QDir::Files);
    const QStringList pictures = QDir(kHelp.filePath(u"images"_s)).entryList({ u"*.png"_s }, QDir::Files);
    for (const QString &name : pictures)
        files << u"images/"_s + name;
    return files;
}

/** The first group of every match in a file of the help. */
QStringList matches(const QString &file, const QString &pattern)
{
    QStringList found;
    auto each = QRegularExpression(pattern).globalMatch(QString::fromUtf8(contents(kHelp.filePath(file))));
    while (each.hasNext())
        found << each.next().captured(1);
    return found;
}

QStringList linksOf(const QString &page)
{
    QStringList links;
    for (const QString &each : matches(page, u"(?:href|src)=\"([^\"]+)\""_s)) {
        if (!each.contains(u':'))
            links << each;
    }
    return links;
}

bool run(const QString &program, const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(60'000);
    if (output)
        *output = process.readAll();
    return ended && process.exitStatus() == QProcess::NormalExit;
}

QSet<QString> asSet(const QStringList &list) { return { list.begin(), list.end() }; }

} // namespace

TEST(Help, TheHelpFileHoldsThePagesAsTheyAre)
{
    QTemporaryDir extracted;
    ASSERT_TRUE(run(u"extract_chmLib"_s, { kData.filePath(u"Kavro2000.chm"_s), extracted.path() }));
    for (const QString &name : sources() + QStringList { u"Kavro2000.hhc"_s, u"Kavro2000.hhk"_s }) {
        EXPECT_EQ(contents(extracted.filePath(name)), contents(kHelp.filePath(name)))
            << name.toStdString() << " has changed: run tools/build-help";
    }
    // Nothing that the sources no longer have, apart from the format's own tables.
    const QStringList left = QDir(extracted.path()).entryList({ u"*.html"_s, u"*.css"_s }, QDir::Files)
        + QDir(extracted.filePath(u"images"_s))
              .entryList(QDir::Files)
              .replaceInStrings(QRegularExpression(u"^"_s), u"images/"_s);
    EXPECT_EQ(asSet(left) - asSet(sources()), QSet<QString>());
}

TEST(Help, EveryLinkLeadsSomewhere)
{
    for (const QString &page : pages()) {
        for (const QString &link : linksOf(page)) {
            const QString file = link.section(u'#', 0, 0);
            const QString anchor = link.section(u'#', 1);
            EXPECT_TRUE(file.isEmpty() || kHelp.exists(file)) << qPrintable(page) << ": " << qPrintable(link);
            if (!anchor.isEmpty()) {
                EXPECT_TRUE(matches(file.isEmpty() ? page : file, u"name=\"([^\"]+)\""_s).contains(anchor))
                    << qPrintable(page) << ": " << qPrintable(link);
            }
        }
    }
}

TEST(Help, EveryPageAndPictureIsReachedAndListed)
{
    QSet<QString> reached { u"index.html"_s };
    QStringList open { u"index.html"_s };
    while (!open.isEmpty()) {
        for (const QString &link : linksOf(open.takeFirst())) {
            const QString file = link.section(u'#', 0, 0);
            if (file.isEmpty() || reached.contains(file))
                continue;
            reached << file;
            if (file.endsWith(".html"_L1))
                open << file;
        }
    }
    EXPECT_EQ(asSet(sources()) - reached, QSet<QString>());
    const QString local = u"name=\"Local\" value=\"([^\"#]+)"_s;
    EXPECT_EQ(matches(u"Kavro2000.hhc"_s, local).size(), pages().size())
        << "each stands in the contents once";
    EXPECT_EQ(asSet(matches(u"Kavro2000.hhc"_s, local)), asSet(pages()));
    EXPECT_EQ(asSet(matches(u"Kavro2000.hhk"_s, local)) - asSet(pages()), QSet<QString>());
}

TEST(Help, PagesAreSoundHtmlWithOneHeadingAndDescribedPictures)
{
    for (const QString &page : pages()) {
        QByteArray faults;
        ASSERT_TRUE(run(u"tidy"_s, { u"-quiet"_s, u"-errors"_s, u"-utf8"_s, kHelp.filePath(page) }, &faults));
        EXPECT_FALSE(faults.contains("Error:")) << qPrintable(page) << '\n' << faults.constData();
        EXPECT_FALSE(
            faults.contains("unescaped") || faults.contains("missing") || faults.contains("discarding"))
            << qPrintable(page) << '\n'
            << faults.constData();
        const QStringList titles = matches(page, u"<title>(.*)</title>"_s);
        ASSERT_EQ(titles.size(), 1) << qPrintable(page);
        EXPECT_EQ(matches(page, u"<h1>(.*)</h1>"_s), titles) << qPrintable(page);
        EXPECT_EQ(matches(page, u"<(script)"_s), QStringList()) << qPrintable(page);
        EXPECT_EQ(matches(page, u"(<img )"_s).size(), matches(page, u"<img [^>]*alt=\"([^\"]+)\""_s).size())
            << qPrintable(page);
    }
}
