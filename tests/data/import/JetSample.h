#pragma once

#include "platform/jet/JetFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

inline void PrintTo(const QString &text, std::ostream *out) { *out << '"' << text.toStdString() << '"'; }

/** The genuine file, and copies of it with bytes changed by hand. */
class JetSample : public testing::Test
{
protected:
    static constexpr int kPage = 4096;

    static QString sample(const char *name = "monitor_v2003.mdb")
    {
        return QStringLiteral(KAVRO_JET_FILES) + u'/' + QString::fromLatin1(name);
    }
    static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /** Writes the bytes under a name of the test's folder. */
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path(name);
    }
    static QList<jet::Row> rowsOf(const QString &path, const QString &table)
    {
        jet::File file(path);
        QList<jet::Row> rows;
        for (const jet::Table &each : file.tables()) {
            if (each.name == table)
                file.read(each, [&](const jet::Row &row) { rows << row; });
        }
        return rows;
    }

    static int word(const QByteArray &bytes, qsizetype at) { return quint8(bytes[at]) | quint8(bytes[at + 1]) << 8; }
    static void setWord(QByteArray &bytes, qsizetype at, int value)
    {
        bytes[at] = char(value);
        bytes[at + 1] = char(value >> 8);
    }
    /** Where a page's entry for a row is. */
    static qsizetype entryOf(int page, int row) { return qsizetype(page) * kPage + 14 + 2 * row; }
    /** The data page that holds this text of UTF-16 or of one-byte characters. */
    static int pageWith(const QByteArray &bytes, const QByteArray &text)
    {
        const qsizetype at = bytes.indexOf(text);
        EXPECT_GE(at, 0);
        return int(at / kPage);
    }
    /** The row of a page that covers the position. */
    static int rowAt(const QByteArray &bytes, int page, qsizetype position)
    {
        const int count = word(bytes, qsizetype(page) * kPage + 12);
        for (int row = 0; row < count; ++row) {
            if (qsizetype(page) * kPage + (word(bytes, entryOf(page, row)) & 0x1fff) <= position)
                return row;
        }
        ADD_FAILURE() << "no row there";
        return 0;
    }

private:
    QTemporaryDir m_folder;
};
