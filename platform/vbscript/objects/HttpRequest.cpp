#include "platform/vbscript/objects/Charset.h"
#include "platform/vbscript/objects/HttpTransfer.h"
#include "platform/vbscript/objects/Makers.h"
#include "platform/vbscript/objects/Stream.h"

#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QStringDecoder>
#include <span>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

enum class Flavour { Client, Server, WinHttp };

constexpr HttpTimeouts kServerTimeouts { 0, 60000, 30000, 30000 };
constexpr int kPollMilliseconds = 10; // a script that asks again and again leaves the processor to others
constexpr qint32 kNotYet = -2147483638;      // 0x8000000A
constexpr qint32 kWrongState = -2147467259;  // 0x80004005

// Which certificate faults a script may ask to overlook (setOption 2, Option 4).
constexpr qint32 kServerIgnoreOption = 2;
constexpr qint32 kWinHttpIgnoreOption = 4;
constexpr qint32 kWinHttpRedirectOption = 6;
constexpr qint32 kUnknownIssuer = 0x100;
constexpr qint32 kWrongHostName = 0x1000;

/** MSXML2.XMLHTTP, its server version, and WinHttp.WinHttpRequest. */
class HttpRequest : public NativeObject<HttpRequest>
{
public:
    explicit HttpRequest(Flavour flavour) : m_flavour(flavour)
    {
        if (flavour != Flavour::Client)
            m_timeouts = kServerTimeouts;
    }
    QString typeName() const override;
    static std::span<const Member<HttpRequest>> members();
    /** Handlers are set without Set: http.onreadystatechange = GetRef("Changed"). */
    bool takesObjects(int member) const override { return member == findMember(u"onreadystatechange"); }

private:
    enum State { Unsent = 0, Opened = 1, HeadersReceived = 2, Loading = 3, Done = 4 };

    [[noreturn]] void fail(qint32 number, const QString &text) const;
    [[noreturn]] void failNetwork(int code) const;
    void requireOpened() const;
    void requireServer(const char *member) const;
    /** Lets an asynchronous request go on; throws while the answer's part is not there. */
    void requireState(ScriptHost &host, State state);
    void advance(ScriptHost &host, int milliseconds);
    void enter(ScriptHost &host, State state);
    State stateNow() const;
    QByteArray bodyOf(Args &args);
    HttpOrder order(const QByteArray &body) const;
    const HttpAnswer &answer() const { return m_transfer->answer(); }
    QString header(const QString &name) const;
    QString charsetName() const;
    void setIgnoredFaults(qint32 faults);

    Value open(Args &args);
    Value setRequestHeader(Args &args);
    Value send(Args &args);
    Value abort(Args &args);
    Value status(Args &args);
    Value statusText(Args &args);
    Value responseText(Args &args);
    Value responseBody(Args &args);
    Value responseStream(Args &args);
    Value responseXml(Args &args);
    Value readyState(Args &args);
    Value getResponseHeader(Args &args);
    Value getAllResponseHeaders(Args &args);
    Value onReadyStateChange(Args &args);
    void putOnReadyStateChange(Args &args);
    Value setTimeouts(Args &args);
    Value waitForResponse(Args &args);
    Value setOption(Args &args);
    Value option(Args &args);
    void putOption(Args &args);
    Value setProxy(Args &args);
    Value setProxyCredentials(Args &args);
    Value setCredentials(Args &args);

    Flavour m_flavour;
    State m_state = Unsent;
    bool m_async = false;
    bool m_notifying = false; // a handler sees the state that it is told of, so looking moves nothing on
    HttpOrder m_order; // what scripts have set so far
    HttpTimeouts m_timeouts;
    qint32 m_ignoredFaults = 0;
    Value m_handler;
    std::shared_ptr<HttpTransfer> m_transfer;
};

QString HttpRequest::typeName() const
{
    switch (m_flavour) {
    case Flavour::Client: return u"XMLHTTP"_s;
    case Flavour::Server: return u"ServerXMLHTTP"_s;
    default: return u"WinHttpRequest"_s;
    }
}

void HttpRequest::fail(qint32 number, const QString &text) const
{
    throw ScriptError::fromComponent(
        number, text, m_flavour == Flavour::WinHttp ? u"WinHttp.WinHttpRequest"_s : u"msxml6.dll"_s);
}

void HttpRequest::failNetwork(int code) const { fail(http::errorNumber(code), http::errorText(code)); }

void HttpRequest::requireOpened() const
{
    if (m_state != Opened || m_transfer)
        fail(kWrongState, u"Unspecified error"_s);
}

void HttpRequest::requireServer(const char *member) const
{
    if (m_flavour == Flavour::Client)
        throw ScriptError(err::kNoSuchMember, QString::fromLatin1(member));
}

HttpRequest::State HttpRequest::stateNow() const
{
    if (m_transfer->isFinished())
        return Done;
    if (!answer().headersComplete)
        return Opened;
    return answer().body.size() > 0 ? Loading : HeadersReceived;
}

void HttpRequest::enter(ScriptHost &host, State state)
{
    m_state = state;
    if (m_handler.is(Type::Object) && !m_handler.isNothing()) {
        const Value handler = m_handler; // it may set another one
        const QScopedValueRollback<bool> inside(m_notifying, true);
        host.callObject(handler.object(), {});
    }
}

void HttpRequest::advance(ScriptHost &host, int milliseconds)
{
    const std::shared_ptr<HttpTransfer> transfer = m_transfer; // the handler may abort or open anew
    const Value keep = Value::object(this);                    // or let go of this object
    try {
        transfer->advance(milliseconds);
    } catch (...) {
        m_state = Done;
        throw;
    }
    while (m_transfer == transfer && m_state < stateNow()) {
        // A redirect takes answers back; what has been reported stays reported.
        enter(
            host, transfer->isFinished() && !transfer->answer().headersComplete ? Done : State(m_state + 1));
    }
}

void HttpRequest::requireState(ScriptHost &host, State state)
{
    if (m_transfer && m_state != Done && !m_notifying)
        advance(host, 0);
    if (!m_transfer || m_state < state)
        fail(kNotYet, u"The data necessary to complete this operation is not yet available."_s);
    if (m_transfer->failure())
        failNetwork(m_transfer->failure());
}

Value HttpRequest::open(Args &args)
{
    const QByteArray method = args.text(0).toUpper().toLatin1();
    static const QRegularExpression token(u"^[A-Z][A-Z0-9_-]*$"_s);
    if (!token.match(QString::fromLatin1(method)).hasMatch())
        throw ScriptError(err::kInvalidCall);
    const QUrl url(args.text(1).trimmed(), QUrl::TolerantMode);
    const QString scheme = url.scheme().toLower();
    if (scheme != "http"_L1 && scheme != "https"_L1)
        failNetwork(http::kUnknownScheme);
    if (!url.isValid() || url.host().isEmpty())
        failNetwork(http::kBadUrl);
    m_transfer.reset();
    m_async = args.boolean(2, m_flavour == Flavour::Client);
    m_order.method = method;
    m_order.url = url;
    m_order.headers.clear();
    m_order.user = args.has(3) ? args.text(3) : QString();
    m_order.password = args.text(4, {});
    const Value keep = Value::object(this);
    enter(args.host(), Opened);
    return {};
}

Value HttpRequest::setRequestHeader(Args &args)
{
    requireOpened();
    static const QRegularExpression token(u"^[!#$%&'*+.^_`|~0-9A-Za-z-]+$"_s);
    static const QRegularExpression control(u"[\\x00\\r\\n]"_s);
    const QString name = args.text(0);
    const QString value = args.text(1);
    if (!token.match(name).hasMatch() || control.match(value).hasMatch())
        throw ScriptError(err::kInvalidCall);
    for (auto &[known, text] : m_order.headers) {
        if (known.compare(name.toLatin1(), Qt::CaseInsensitive) != 0)
            continue;
        text += ", " + value.toUtf8();
        return {};
    }
    m_order.headers.emplaceBack(name.toLatin1(), value.toUtf8());
    return {};
}

QByteArray HttpRequest::bodyOf(Args &args)
{
    const Value &value = args[0];
    if (!args.has(0) || value.is(Type::Empty) || value.is(Type::Null) || value.isNothing())
        return {};
    if (value.is(Type::Array))
        return toBytes(args.host(), value);
    if (value.is(Type::Object)) {
        if (const auto *stream = dynamic_cast<Stream *>(value.object()))
            return stream->remaining();
    }
    const TextView text(args, 0);
    const memory::Charge passing(text.view().size() * 3);
    const QByteArray bytes = text.view().toUtf8();
    bool typed = false;
    for (const auto &[name, unused] : std::as_const(m_order.headers))
        typed = typed || name.compare("content-type", Qt::CaseInsensitive) == 0;
    if (!typed && !bytes.isEmpty())
        m_order.headers.emplaceBack("Content-Type", "text/plain; charset=UTF-8");
    return bytes;
}

HttpOrder HttpRequest::order(const QByteArray &body) const
{
    HttpOrder result = m_order;
    result.body = body;
    result.timeouts = m_timeouts;
    result.checkIssuer = !(m_ignoredFaults & kUnknownIssuer);
    result.checkHostName = !(m_ignoredFaults & kWrongHostName);
    return result;
}

Value HttpRequest::send(Args &args)
{
    requireOpened();
    const bool bodyless = m_order.method == "GET" || m_order.method == "HEAD";
    const QByteArray body = bodyless ? QByteArray() : bodyOf(args);
    m_transfer = std::make_shared<HttpTransfer>(order(body));
    ScriptHost &host = args.host();
    const std::shared_ptr<HttpTransfer> transfer = m_transfer;
    const Value keep = Value::object(this);
    advance(host, 0);
    while (!m_async && m_transfer == transfer && m_state != Done)
        advance(host, waitSlice(host));
    if (!m_async && transfer->failure())
        failNetwork(transfer->failure());
    return {};
}

Value HttpRequest::abort(Args &)
{
    m_transfer.reset();
    m_state = Unsent;
    return {};
}

Value HttpRequest::status(Args &args)
{
    // The client version tells a failed asynchronous request by a status of the network's own.
    if (m_flavour == Flavour::Client && m_transfer && m_state == Done && m_transfer->failure())
        return Value::longInteger(m_transfer->failure());
    requireState(args.host(), HeadersReceived);
    return Value::longInteger(answer().status);
}

Value HttpRequest::statusText(Args &args)
{
    requireState(args.host(), HeadersReceived);
    return Value::string(answer().statusText);
}

QString HttpRequest::header(const QString &name) const
{
    QStringList values;
    for (const QString &line : answer().headerLines) {
        if (line.section(u':', 0, 0).trimmed().compare(name, Qt::CaseInsensitive) == 0)
            values.append(line.section(u':', 1).trimmed());
    }
    return values.join(u", "_s);
}

QString HttpRequest::charsetName() const
{
    static const QRegularExpression parameter(
        u"charset\\s*=\\s*\"?([^\";\\s]+)"_s, QRegularExpression::CaseInsensitiveOption);
    const QString named = parameter.match(header(u"Content-Type"_s)).captured(1);
    const QByteArray start = answer().body.bytes().left(3);
    if (start == "\xef\xbb\xbf")
        return u"utf-8"_s;
    if (start.startsWith("\xff\xfe") || start.startsWith("\xfe\xff"))
        return start.startsWith('\xff') ? u"utf-16le"_s : u"utf-16be"_s;
    return !named.isEmpty() && Charset(named).isKnown() ? named : u"utf-8"_s;
}

Value HttpRequest::responseText(Args &args)
{
    requireState(args.host(), Done);
    Charset charset(charsetName());
    QByteArrayView bytes(answer().body.bytes());
    const QByteArray mark = charset.mark();
    if (!mark.isEmpty() && bytes.startsWith(mark))
        bytes = bytes.sliced(mark.size());
    args.host().spend(bytes.size() / 8);
    const memory::Charge passing(2 * bytes.size());
    qsizetype used = 0;
    return Value::string(charset.decode(bytes, bytes.size() * 2, used));
}

Value HttpRequest::responseBody(Args &args)
{
    requireState(args.host(), Done);
    return Value::bytes(answer().body.bytes());
}

Value HttpRequest::responseStream(Args &args)
{
    requireState(args.host(), Done);
    return Value::object(Stream::makeOpen(answer().body.bytes()));
}

Value HttpRequest::responseXml(Args &)
{
    throw ScriptError(err::kActionNotSupported); // there is no XML document object here
}

Value HttpRequest::readyState(Args &args)
{
    if (m_transfer && m_state != Done && !m_notifying) {
        waitSlice(args.host());
        advance(args.host(), kPollMilliseconds);
    }
    return Value::longInteger(m_state);
}

Value HttpRequest::getResponseHeader(Args &args)
{
    requireState(args.host(), HeadersReceived);
    return Value::string(header(args.text(0)));
}

Value HttpRequest::getAllResponseHeaders(Args &args)
{
    requireState(args.host(), HeadersReceived);
    QString text;
    for (const QString &line : answer().headerLines)
        text += line + u"\r\n"_s;
    return Value::string(text + u"\r\n"_s);
}

Value HttpRequest::onReadyStateChange(Args &) { return m_handler; }

void HttpRequest::putOnReadyStateChange(Args &args) { m_handler = args.newValue().resolved(); }

Value HttpRequest::setTimeouts(Args &args)
{
    requireServer("setTimeouts");
    HttpTimeouts limits { args.integer(0), args.integer(1), args.integer(2), args.integer(3) };
    for (qint32 *limit : { &limits.resolve, &limits.connect, &limits.send, &limits.receive }) {
        if (*limit < -1)
            throw ScriptError(err::kInvalidCall);
        *limit = qMax(*limit, 0); // -1 is without limit too
    }
    m_timeouts = limits;
    return {};
}

Value HttpRequest::waitForResponse(Args &args)
{
    requireServer("waitForResponse");
    if (!m_transfer)
        fail(kWrongState, u"Unspecified error"_s);
    const double seconds = args.has(0) ? args.real(0) : -1;
    const std::shared_ptr<HttpTransfer> transfer = m_transfer;
    const Value keep = Value::object(this);
    QElapsedTimer waited;
    waited.start();
    while (m_transfer == transfer && m_state != Done) {
        if (seconds >= 0 && double(waited.elapsed()) >= seconds * 1000)
            return Value::boolean(false);
        advance(args.host(), waitSlice(args.host()));
    }
    if (transfer->failure())
        failNetwork(transfer->failure());
    return Value::boolean(true);
}

void HttpRequest::setIgnoredFaults(qint32 faults) { m_ignoredFaults = faults; }

Value HttpRequest::setOption(Args &args)
{
    requireServer("setOption");
    if (args.integer(0) == kServerIgnoreOption)
        setIgnoredFaults(args.integer(1));
    return {};
}

Value HttpRequest::option(Args &args)
{
    requireServer("Option");
    const qint32 which = args.integer(0);
    if (which == kWinHttpRedirectOption && m_flavour == Flavour::WinHttp)
        return Value::boolean(m_order.followRedirects);
    const qint32 ignoring = m_flavour == Flavour::WinHttp ? kWinHttpIgnoreOption : kServerIgnoreOption;
    return which == ignoring ? Value::longInteger(m_ignoredFaults) : Value();
}

void HttpRequest::putOption(Args &args)
{
    requireServer("Option");
    const qint32 which = args.integer(0);
    if (which == kWinHttpIgnoreOption)
        setIgnoredFaults(toLong(args.host(), args.newValue()));
    if (which == kWinHttpRedirectOption)
        m_order.followRedirects = toBoolean(args.host(), args.newValue());
}

Value HttpRequest::setProxy(Args &args)
{
    requireServer("setProxy");
    const qint32 setting = args.integer(0);
    if (setting < 0 || setting > 2)
        throw ScriptError(err::kInvalidCall);
    m_order.ignoreProxies = setting == 1;
    m_order.proxy = setting == 2 ? args.text(1, {}) : QString();
    m_order.noProxy = args.text(2, {}).replace(u';', u',').remove(u"<local>"_s);
    return {};
}

Value HttpRequest::setProxyCredentials(Args &args)
{
    requireServer("setProxyCredentials");
    m_order.proxyUser = args.text(0);
    m_order.proxyPassword = args.text(1);
    return {};
}

Value HttpRequest::setCredentials(Args &args)
{
    requireServer("SetCredentials");
    if (args.integer(2, 0) == 1)
        return setProxyCredentials(args);
    m_order.user = args.text(0);
    m_order.password = args.text(1);
    return {};
}

std::span<const Member<HttpRequest>> HttpRequest::members()
{
    using H = HttpRequest;
    static constexpr Member<H> table[] = {
        { "open", 2, 5, &H::open },
        { "setRequestHeader", 2, 2, &H::setRequestHeader },
        { "send", 0, 1, &H::send },
        { "abort", 0, 0, &H::abort },
        { "status", 0, 0, &H::status },
        { "statusText", 0, 0, &H::statusText },
        { "responseText", 0, 0, &H::responseText },
        { "responseBody", 0, 0, &H::responseBody },
        { "responseStream", 0, 0, &H::responseStream },
        { "responseXML", 0, 0, &H::responseXml },
        { "readyState", 0, 0, &H::readyState },
        { "getResponseHeader", 1, 1, &H::getResponseHeader },
        { "getAllResponseHeaders", 0, 0, &H::getAllResponseHeaders },
        { "onreadystatechange", 0, 0, &H::onReadyStateChange, &H::putOnReadyStateChange },
        { "setTimeouts", 4, 4, &H::setTimeouts },
        { "waitForResponse", 0, 1, &H::waitForResponse },
        { "setOption", 2, 2, &H::setOption },
        { "getOption", 1, 1, &H::option },
        { "Option", 1, 1, &H::option, &H::putOption },
        { "setProxy", 1, 3, &H::setProxy },
        { "setProxyCredentials", 2, 2, &H::setProxyCredentials },
        { "SetCredentials", 2, 3, &H::setCredentials },
    };
    return table;
}

}

Object *makeHttpClient(ScriptHost &) { return new HttpRequest(Flavour::Client); }

Object *makeHttpServerClient(ScriptHost &) { return new HttpRequest(Flavour::Server); }

Object *makeWinHttp(ScriptHost &) { return new HttpRequest(Flavour::WinHttp); }

}
