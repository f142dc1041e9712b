#pragma once

#include "platform/vbscript/objects/Channel.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <span>

namespace vbs::objects {

enum class TextEncoding { Utf8, Utf16 };

/** The text stream of files and of a command's standard streams. */
class TextStream : public NativeObject<TextStream>
{
public:
    enum class Direction { Read, Write };
    struct Style
    {
        TextEncoding encoding = TextEncoding::Utf8;
        bool startsFile = false; // writes the byte-order mark of UTF-16 first
        bool unixLineEnds = false;
    };

    TextStream(std::unique_ptr<Channel> channel, Direction direction, Style style);

    QString typeName() const override { return QStringLiteral("TextStream"); }
    static std::span<const Member<TextStream>> members();

private:
    void requireReading() const;
    void requireWriting() const;
    /** Reads more; false at the end. */
    bool fill(ScriptHost &host);
    bool ensure(ScriptHost &host, qsizetype count);
    QStringView buffered() const { return QStringView(m_text).mid(m_at); }
    /** Position of the next line feed after what is consumed, or of the end. */
    qsizetype lineLength(ScriptHost &host);
    void consume(qsizetype count);
    void follow(QStringView text);
    void put(ScriptHost &host, QStringView text);
    void requireMore(ScriptHost &host);

    Value read(Args &args);
    Value readLine(Args &args);
    Value readAll(Args &args);
    Value skip(Args &args);
    Value skipLine(Args &args);
    Value write(Args &args);
    Value writeLine(Args &args);
    Value writeBlankLines(Args &args);
    Value close(Args &args);
    Value atEndOfStream(Args &args);
    Value atEndOfLine(Args &args);
    Value line(Args &args);
    Value column(Args &args);

    std::unique_ptr<Channel> m_channel;
    Direction m_direction;
    Style m_style;
    QStringDecoder m_decoder;
    QStringEncoder m_encoder;
    QString m_text; // read and decoded
    qsizetype m_at = 0; // consumed of it
    bool m_ended = false;
    memory::Charge m_charge;
    qint32 m_line = 1;
    qint32 m_column = 1;
};

/** What OpenTextFile and its relatives take. */
enum class OpenMode { Read = 1, Write = 2, Append = 8 };
constexpr qint32 kFormatUnicode = -1;
constexpr qint32 kFormatDefault = -2;

/** Opens a file on this system's path; `format` as of OpenTextFile. Throws 5 for an odd mode or format. */
Object *openTextFile(ScriptHost &host, const QString &path, qint32 mode, bool create, qint32 format);
/** Creates a file; 58 when it is there and may not be overwritten. */
Object *createTextFile(const QString &path, bool overwrite, bool unicode);

}
