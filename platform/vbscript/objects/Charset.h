#pragma once

#include <QByteArray>
#include <QString>

namespace vbs::objects {

/** The conversions of one character set, by its Internet name. */
class Charset
{
public:
    explicit Charset(const QString &name);
    ~Charset();
    Q_DISABLE_COPY_MOVE(Charset)

    bool isKnown() const;
    /** What a text of this set starts with. */
    QByteArray mark() const;
    QByteArray encode(QStringView text);
    /**
     * Decodes at most `most` UTF-16 units (a pair that begins within them is kept whole). `used` tells how
     * many bytes that took. Bytes that mean nothing become U+FFFD.
     */
    QString decode(QByteArrayView bytes, qsizetype most, qsizetype &used);

private:
    void *m_toText = nullptr;
    void *m_fromText = nullptr;
    QByteArray m_name;
};

}
