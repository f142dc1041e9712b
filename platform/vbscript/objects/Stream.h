#pragma once

#include "platform/vbscript/objects/Charset.h"
#include "platform/vbscript/objects/Support.h"

#include <memory>
#include <span>

namespace vbs::objects {

/** ADODB.Stream: bytes in memory, read and written as bytes or as text of a character set. */
class Stream : public NativeObject<Stream>
{
public:
    Stream();
    /** An open binary stream that holds `bytes`. */
    static Stream *makeOpen(QByteArrayView bytes);

    QString typeName() const override { return QStringLiteral("Stream"); }
    static std::span<const Member<Stream>> members();
    /** What lies behind the position: what a request sends. */
    QByteArray remaining() const { return m_buffer.bytes().mid(m_position); }

private:
    enum Kind { Binary = 1, Text = 2 };

    void requireOpen() const;
    void requireKind(Kind kind) const;
    void requireStart() const;
    void put(QByteArrayView bytes);
    void writeMark();
    void skipMark();
    /** Text from the position on, at most so many characters; moves on. */
    QString takeText(ScriptHost &host, qsizetype most);
    QString takeLine(ScriptHost &host);
    QByteArray lineEnd();
    void copyText(Args &args, Stream &target);
    void copyBytes(Args &args, Stream &target);

    Value open(Args &args);
    Value close(Args &args);
    Value read(Args &args);
    Value readText(Args &args);
    Value skipLine(Args &args);
    Value write(Args &args);
    Value writeText(Args &args);
    Value loadFromFile(Args &args);
    Value saveToFile(Args &args);
    Value copyTo(Args &args);
    Value setEos(Args &args);
    Value flush(Args &args);
    Value type(Args &args);
    void putType(Args &args);
    Value charset(Args &args);
    void putCharset(Args &args);
    Value mode(Args &args);
    void putMode(Args &args);
    Value lineSeparator(Args &args);
    void putLineSeparator(Args &args);
    Value position(Args &args);
    void putPosition(Args &args);
    Value size(Args &args);
    Value eos(Args &args);
    Value state(Args &args);

    bool m_open = false;
    Kind m_kind = Text;
    QString m_charsetName;
    std::unique_ptr<Charset> m_charset;
    qint32 m_mode = 0;
    qint32 m_lineSeparator = -1;
    ByteBuffer m_buffer;
    qint64 m_position = 0;
};

}
