#include "platform/vbscript/objects/Stream.h"

#include "platform/vbscript/objects/Channel.h"
#include "platform/vbscript/objects/Makers.h"

#include <fcntl.h>
#include <limits>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

constexpr qint64 kChunk = 256 * 1024;
constexpr qint32 kReadAll = -1;
constexpr qint32 kReadLine = -2;

struct StreamErrorRow
{
    qint32 number;
    const char *text;
};
constexpr StreamErrorRow kBadArgument { -2146825287,
    "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another." };
constexpr StreamErrorRow kCannotOpen { -2146825286, "File could not be opened." };
constexpr StreamErrorRow kCannotWrite { -2146825284, "Write to file failed." };
constexpr StreamErrorRow kWrongContext { -2146825069, "Operation is not allowed in this context." };
constexpr StreamErrorRow kClosed { -2146824584, "Operation is not allowed when the object is closed." };
constexpr StreamErrorRow kAlreadyOpen { -2146824583, "Operation is not allowed when the object is open." };

ScriptError streamError(const StreamErrorRow &row)
{
    return ScriptError::fromComponent(row.number, QString::fromLatin1(row.text), u"ADODB.Stream"_s);
}

}

Stream::Stream() : m_charsetName(u"Unicode"_s), m_charset(std::make_unique<Charset>(m_charsetName)) { }

Stream *Stream::makeOpen(QByteArrayView bytes)
{
    auto stream = std::make_unique<Stream>();
    stream->m_open = true;
    stream->m_kind = Binary;
    stream->m_buffer.append(bytes);
    return stream.release();
}

void Stream::requireOpen() const
{
    if (!m_open)
        throw streamError(kClosed);
}

void Stream::requireKind(Kind kind) const
{
    requireOpen();
    if (m_kind != kind)
        throw streamError(kWrongContext);
}

void Stream::requireStart() const
{
    if (m_open && m_position != 0)
        throw streamError(kWrongContext);
}

void Stream::put(QByteArrayView bytes)
{
    m_buffer.write(m_position, bytes);
    m_position += bytes.size();
}

void Stream::writeMark()
{
    if (m_buffer.size() == 0)
        put(m_charset->mark());
}

void Stream::skipMark()
{
    const QByteArray mark = m_charset->mark();
    if (m_position == 0 && !mark.isEmpty() && m_buffer.bytes().startsWith(mark))
        m_position = mark.size();
}

Value Stream::open(Args &)
{
    if (m_open)
        throw streamError(kAlreadyOpen);
    m_open = true;
    return {};
}

Value Stream::close(Args &)
{
    requireOpen();
    m_open = false;
    m_buffer.clear();
    m_position = 0;
    return {};
}

Value Stream::read(Args &args)
{
    requireKind(Binary);
    const qint32 count = args.integer(0, kReadAll);
    if (count < kReadAll)
        throw streamError(kBadArgument);
    if (m_position >= m_buffer.size())
        return Value::null();
    const qint64 left = m_buffer.size() - m_position;
    const qint64 taken = count == kReadAll ? left : qMin<qint64>(count, left);
    args.host().spend(taken / 256);
    const Value result = Value::bytes(m_buffer.bytes().mid(m_position, taken));
    m_position += taken;
    return result;
}

QString Stream::takeText(ScriptHost &host, qsizetype most)
{
    skipMark();
    const QByteArrayView rest = QByteArrayView(m_buffer.bytes()).sliced(m_position);
    host.spend(qMin<qint64>(rest.size(), most) / 8);
    qsizetype used = 0;
    const QString text = m_charset->decode(rest, most, used);
    m_position += used;
    return text;
}

QByteArray Stream::lineEnd()
{
    const QString end = m_lineSeparator == -1 ? u"\r\n"_s : QString(QChar(char16_t(m_lineSeparator)));
    return m_charset->encode(end);
}

QString Stream::takeLine(ScriptHost &host)
{
    skipMark();
    const QByteArray end = lineEnd();
    qint64 found = m_buffer.bytes().indexOf(end, m_position);
    const qint64 unit = m_charset->encode(u"\n").size();
    while (found >= 0 && (found - m_position) % unit != 0) // not between the halves of two characters
        found = m_buffer.bytes().indexOf(end, found + 1);
    const qint64 stop = found < 0 ? m_buffer.size() : found;
    host.spend((stop - m_position) / 8);
    qsizetype used = 0;
    const QByteArrayView line = QByteArrayView(m_buffer.bytes()).sliced(m_position, stop - m_position);
    const QString text = m_charset->decode(line, line.size() * 2, used);
    m_position = found < 0 ? stop : stop + end.size();
    return text;
}

Value Stream::readText(Args &args)
{
    requireKind(Text);
    const qint32 count = args.integer(0, kReadAll);
    if (count < kReadLine)
        throw streamError(kBadArgument);
    // The decoded text stands beside the value for a moment.
    const qint64 left = 2 * (m_buffer.size() - m_position);
    const memory::Charge passing(count >= 0 ? qMin<qint64>(2LL * count, left) : left);
    if (count == kReadLine)
        return Value::string(takeLine(args.host()));
    return Value::string(
        takeText(args.host(), count == kReadAll ? std::numeric_limits<qint32>::max() : count));
}

Value Stream::skipLine(Args &args)
{
    requireKind(Text);
    takeLine(args.host());
    return {};
}

Value Stream::write(Args &args)
{
    requireKind(Binary);
    if (!args[0].is(Type::Array) || args[0].array()->elementType != Type::Byte)
        throw streamError(kBadArgument);
    args.host().spend(args[0].array()->size / 256);
    put(args[0].array()->bytes);
    return {};
}

Value Stream::writeText(Args &args)
{
    requireKind(Text);
    const qint32 option = args.integer(1, 0);
    if (option < 0 || option > 1)
        throw streamError(kBadArgument);
    const TextView text(args, 0);
    writeMark();
    for (qsizetype at = 0; at < text.view().size();) {
        qsizetype count = qMin<qsizetype>(kChunk, text.view().size() - at);
        if (text.view()[at + count - 1].isHighSurrogate() && at + count < text.view().size())
            ++count;
        args.host().spend(count / 8);
        put(m_charset->encode(text.view().sliced(at, count)));
        at += count;
    }
    if (option == 1)
        put(lineEnd());
    return {};
}

Value Stream::loadFromFile(Args &args)
{
    requireOpen();
    ByteBuffer loaded;
    try {
        FileChannel file(nativePath(args.text(0)), O_RDONLY);
        QByteArray chunk(kChunk, Qt::Uninitialized);
        while (const qint64 count = file.read(args.host(), chunk.data(), chunk.size())) {
            loaded.append(QByteArrayView(chunk).first(count));
            args.host().spend(1 + count / 256);
        }
    } catch (const ScriptError &error) {
        if (error.number() == err::kOutOfMemory)
            throw;
        throw streamError(kCannotOpen);
    }
    m_buffer.clear();
    m_buffer.append(loaded.bytes());
    m_position = 0;
    return {};
}

Value Stream::saveToFile(Args &args)
{
    requireOpen();
    const qint32 option = args.integer(1, 1);
    if (option != 1 && option != 2)
        throw streamError(kBadArgument);
    try {
        FileChannel file(nativePath(args.text(0)), O_WRONLY | O_CREAT | (option == 1 ? O_EXCL : O_TRUNC));
        file.write(args.host(), m_buffer.bytes());
    } catch (const ScriptError &) {
        throw streamError(kCannotWrite);
    }
    m_position = 0;
    return {};
}

void Stream::copyText(Args &args, Stream &target)
{
    const qint32 count = args.integer(1, kReadAll);
    const memory::Charge passing(2 * (m_buffer.size() - m_position));
    const QString text = takeText(args.host(), count < 0 ? std::numeric_limits<qint32>::max() : count);
    target.writeMark();
    target.put(target.m_charset->encode(text));
}

void Stream::copyBytes(Args &args, Stream &target)
{
    const qint32 count = args.integer(1, kReadAll);
    qint64 bytes = m_buffer.size() - m_position;
    if (count >= 0 && m_kind == Text) {
        qsizetype used = 0;
        m_charset->decode(QByteArrayView(m_buffer.bytes()).sliced(m_position), count, used);
        bytes = used;
    } else if (count >= 0) {
        bytes = qMin<qint64>(bytes, count);
    }
    args.host().spend(bytes / 256);
    const memory::Charge passing(bytes);
    const QByteArray piece = m_buffer.bytes().mid(m_position, bytes); // target may be this stream
    m_position += bytes;
    target.put(piece);
}

Value Stream::copyTo(Args &args)
{
    requireOpen();
    auto *target = dynamic_cast<Stream *>(toObject(args[0]));
    if (!target)
        throw streamError(kBadArgument);
    target->requireOpen();
    if (m_kind == Binary && target->m_kind == Text)
        throw streamError(kWrongContext);
    if (target->m_kind == Text)
        copyText(args, *target);
    else
        copyBytes(args, *target);
    return {};
}

Value Stream::setEos(Args &)
{
    requireOpen();
    m_buffer.resize(m_position);
    return {};
}

Value Stream::flush(Args &)
{
    requireOpen(); // there is nothing behind it to flush to
    return {};
}

Value Stream::type(Args &) { return Value::longInteger(m_kind); }

void Stream::putType(Args &args)
{
    const qint32 kind = toLong(args.host(), args.newValue());
    if (kind != Binary && kind != Text)
        throw streamError(kBadArgument);
    requireStart();
    m_kind = Kind(kind);
}

Value Stream::charset(Args &) { return Value::string(m_charsetName); }

void Stream::putCharset(Args &args)
{
    const QString name = toText(args.host(), args.newValue());
    auto charset = std::make_unique<Charset>(name);
    if (!charset->isKnown())
        throw streamError(kBadArgument);
    requireStart();
    m_charsetName = name;
    m_charset = std::move(charset);
}

Value Stream::mode(Args &) { return Value::longInteger(m_mode); }

void Stream::putMode(Args &args)
{
    if (m_open)
        throw streamError(kAlreadyOpen);
    m_mode = toLong(args.host(), args.newValue());
}

Value Stream::lineSeparator(Args &) { return Value::longInteger(m_lineSeparator); }

void Stream::putLineSeparator(Args &args)
{
    const qint32 separator = toLong(args.host(), args.newValue());
    if (separator != -1 && separator != 10 && separator != 13)
        throw streamError(kBadArgument);
    m_lineSeparator = separator;
}

Value Stream::position(Args &)
{
    requireOpen();
    return sizeValue(m_position);
}

void Stream::putPosition(Args &args)
{
    requireOpen();
    const qint32 position = toLong(args.host(), args.newValue());
    if (position < 0)
        throw streamError(kBadArgument);
    if (position > m_buffer.size())
        m_buffer.resize(position);
    m_position = position;
}

Value Stream::size(Args &)
{
    requireOpen();
    return sizeValue(m_buffer.size());
}

Value Stream::eos(Args &)
{
    requireOpen();
    return Value::boolean(m_position >= m_buffer.size());
}

Value Stream::state(Args &) { return Value::longInteger(m_open); }

std::span<const Member<Stream>> Stream::members()
{
    using S = Stream;
    static constexpr Member<S> table[] = {
        { "Open", 0, 5, &S::open },
        { "Close", 0, 0, &S::close },
        { "Read", 0, 1, &S::read },
        { "ReadText", 0, 1, &S::readText },
        { "SkipLine", 0, 0, &S::skipLine },
        { "Write", 1, 1, &S::write },
        { "WriteText", 1, 2, &S::writeText },
        { "LoadFromFile", 1, 1, &S::loadFromFile },
        { "SaveToFile", 1, 2, &S::saveToFile },
        { "CopyTo", 1, 2, &S::copyTo },
        { "SetEOS", 0, 0, &S::setEos },
        { "Flush", 0, 0, &S::flush },
        { "Cancel", 0, 0, &S::flush },
        { "Type", 0, 0, &S::type, &S::putType },
        { "Charset", 0, 0, &S::charset, &S::putCharset },
        { "Mode", 0, 0, &S::mode, &S::putMode },
        { "LineSeparator", 0, 0, &S::lineSeparator, &S::putLineSeparator },
        { "Position", 0, 0, &S::position, &S::putPosition },
        { "Size", 0, 0, &S::size },
        { "EOS", 0, 0, &S::eos },
        { "State", 0, 0, &S::state },
    };
    return table;
}

Object *makeStream(ScriptHost &) { return new Stream; }

}
