#include "platform/vbscript/objects/TextStream.h"

#include <QFile>
#include <QFileInfo>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

constexpr qint64 kChunk = 64 * 1024;

QStringConverter::Encoding converterOf(TextEncoding encoding)
{
    return encoding == TextEncoding::Utf16 ? QStringConverter::Utf16LE : QStringConverter::Utf8;
}

bool startsLikeUtf16(const QString &path)
{
    char mark[2] = {};
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.read(mark, 2) == 2
        && mark[0] == '\xff' && mark[1] == '\xfe';
}

}

TextStream::TextStream(std::unique_ptr<Channel> channel, Direction direction, Style style)
    : m_channel(std::move(channel)), m_direction(direction), m_style(style),
      m_decoder(converterOf(style.encoding)), m_encoder(converterOf(style.encoding))
{
}

void TextStream::requireReading() const
{
    if (!m_channel)
        throw ScriptError(err::kObjectNotSet);
    if (m_direction != Direction::Read)
        throw ScriptError(err::kBadFileMode);
}

void TextStream::requireWriting() const
{
    if (!m_channel)
        throw ScriptError(err::kObjectNotSet);
    if (m_direction != Direction::Write)
        throw ScriptError(err::kBadFileMode);
}

bool TextStream::fill(ScriptHost &host)
{
    if (m_ended)
        return false;
    if (m_at > 0 && m_at >= m_text.size() / 2) {
        m_text.remove(0, m_at);
        m_at = 0;
    }
    if (m_text.capacity() < m_text.size() + kChunk) {
        const qint64 wanted = m_text.size() + qMax<qint64>(kChunk, qMin<qint64>(m_text.size(), 64 * kChunk));
        m_charge.resize(2 * wanted);
        m_text.reserve(wanted);
    }
    char bytes[kChunk];
    const qint64 count = m_channel->read(host, bytes, kChunk);
    host.spend(1 + count / 16);
    m_ended = count == 0;
    m_text += m_decoder(QByteArrayView(bytes, count));
    return !m_ended;
}

bool TextStream::ensure(ScriptHost &host, qsizetype count)
{
    while (m_text.size() - m_at < count && fill(host)) { }
    return m_text.size() - m_at >= count;
}

void TextStream::requireMore(ScriptHost &host)
{
    requireReading();
    if (!ensure(host, 1))
        throw ScriptError(err::kPastEnd);
}

qsizetype TextStream::lineLength(ScriptHost &host)
{
    qsizetype looked = 0;
    while (true) {
        const qsizetype found = buffered().indexOf(u'\n', looked);
        if (found >= 0)
            return found;
        looked = buffered().size();
        if (!fill(host))
            return buffered().size();
    }
}

void TextStream::follow(QStringView text)
{
    const qsizetype last = text.lastIndexOf(u'\n');
    m_column = last < 0 ? m_column + qint32(text.size()) : qint32(text.size() - last);
    m_line += qint32(text.count(u'\n'));
}

void TextStream::consume(qsizetype count)
{
    follow(buffered().first(count));
    m_at += count;
}

Value TextStream::read(Args &args)
{
    const qint32 count = args.integer(0);
    if (count < 0)
        throw ScriptError(err::kInvalidCall);
    requireMore(args.host());
    ensure(args.host(), count);
    const Value result = Value::string(buffered().left(count));
    consume(qMin<qsizetype>(count, buffered().size()));
    return result;
}

Value TextStream::readLine(Args &args)
{
    requireMore(args.host());
    const qsizetype length = lineLength(args.host());
    QStringView text = buffered().first(length);
    if (text.endsWith(u'\r'))
        text.chop(1);
    const Value result = Value::string(text);
    consume(qMin(length + 1, buffered().size()));
    return result;
}

Value TextStream::readAll(Args &args)
{
    requireMore(args.host());
    while (fill(args.host())) { }
    const Value result = Value::string(buffered());
    consume(buffered().size());
    return result;
}

Value TextStream::skip(Args &args)
{
    read(args);
    return {};
}

Value TextStream::skipLine(Args &args)
{
    requireMore(args.host());
    consume(qMin(lineLength(args.host()) + 1, buffered().size()));
    return {};
}

void TextStream::put(ScriptHost &host, QStringView text)
{
    requireWriting();
    if (m_style.startsFile && m_style.encoding == TextEncoding::Utf16)
        m_channel->write(host, "\xff\xfe");
    m_style.startsFile = false;
    for (qsizetype at = 0; at < text.size(); at += kChunk) {
        const QStringView piece = text.mid(at, kChunk);
        const QByteArray bytes = m_encoder(piece);
        host.spend(1 + piece.size() / 16);
        m_channel->write(host, bytes);
        follow(piece);
    }
}

Value TextStream::write(Args &args)
{
    put(args.host(), TextView(args, 0).view());
    return {};
}

Value TextStream::writeLine(Args &args)
{
    const QString end = m_style.unixLineEnds ? u"\n"_s : u"\r\n"_s;
    std::optional<TextView> given;
    if (args.has(0))
        given.emplace(args, 0);
    const QStringView text = given ? given->view() : QStringView();
    if (text.size() > kChunk) {
        put(args.host(), text);
        put(args.host(), end);
    } else { // in one piece, so that lines of several writers do not mix
        put(args.host(), text.toString() + end);
    }
    return {};
}

Value TextStream::writeBlankLines(Args &args)
{
    const qint32 count = args.integer(0);
    for (qint32 i = 0; i < count; ++i)
        put(args.host(), m_style.unixLineEnds ? u"\n"_s : u"\r\n"_s);
    return {};
}

Value TextStream::close(Args &args)
{
    if (m_channel && m_direction == Direction::Write && m_style.startsFile)
        put(args.host(), {}); // an empty Unicode file has its mark too
    m_channel.reset();
    m_text = QString();
    m_at = 0;
    m_charge.resize(0);
    return {};
}

Value TextStream::atEndOfStream(Args &args)
{
    requireReading();
    return Value::boolean(!ensure(args.host(), 1));
}

Value TextStream::atEndOfLine(Args &args)
{
    requireReading();
    if (!ensure(args.host(), 1))
        return Value::boolean(true);
    const QChar next = buffered().front();
    return Value::boolean(next == u'\n' || next == u'\r');
}

Value TextStream::line(Args &) { return Value::longInteger(m_line); }

Value TextStream::column(Args &) { return Value::longInteger(m_column); }

std::span<const Member<TextStream>> TextStream::members()
{
    using T = TextStream;
    static constexpr Member<T> table[] = {
        { "Read", 1, 1, &T::read },
        { "ReadLine", 0, 0, &T::readLine },
        { "ReadAll", 0, 0, &T::readAll },
        { "Skip", 1, 1, &T::skip },
        { "SkipLine", 0, 0, &T::skipLine },
        { "Write", 1, 1, &T::write },
        { "WriteLine", 0, 1, &T::writeLine },
        { "WriteBlankLines", 1, 1, &T::writeBlankLines },
        { "Close", 0, 0, &T::close },
        { "AtEndOfStream", 0, 0, &T::atEndOfStream },
        { "AtEndOfLine", 0, 0, &T::atEndOfLine },
        { "Line", 0, 0, &T::line },
        { "Column", 0, 0, &T::column },
    };
    return table;
}

Object *openTextFile(ScriptHost &, const QString &path, qint32 mode, bool create, qint32 format)
{
    const bool writes = mode == qint32(OpenMode::Write) || mode == qint32(OpenMode::Append);
    if ((!writes && mode != qint32(OpenMode::Read)) || format < kFormatDefault || format > 0)
        throw ScriptError(err::kInvalidCall);
    int flags = writes ? O_WRONLY : O_RDONLY;
    if (create)
        flags |= O_CREAT;
    if (mode == qint32(OpenMode::Write))
        flags |= O_TRUNC;
    if (mode == qint32(OpenMode::Append))
        flags |= O_APPEND;
    const bool unicode = format == kFormatUnicode || (format == kFormatDefault && startsLikeUtf16(path));
    auto channel = std::make_unique<FileChannel>(path, flags);
    const TextStream::Style style { unicode ? TextEncoding::Utf16 : TextEncoding::Utf8, channel->size() == 0,
        false };
    return new TextStream(std::move(channel),
        writes ? TextStream::Direction::Write : TextStream::Direction::Read, style);
}

Object *createTextFile(const QString &path, bool overwrite, bool unicode)
{
    auto channel = std::make_unique<FileChannel>(path, O_WRONLY | O_CREAT | (overwrite ? O_TRUNC : O_EXCL));
    const TextStream::Style style { unicode ? TextEncoding::Utf16 : TextEncoding::Utf8, true, false };
    return new TextStream(std::move(channel), TextStream::Direction::Write, style);
}

}
