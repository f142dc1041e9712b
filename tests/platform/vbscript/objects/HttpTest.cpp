#include "ObjectHost.h"
#include "RawServer.h"

#include "platform/vbscript/Engine.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using vbs::Value;

namespace {

constexpr int kTimedOut = -2147012894;
constexpr int kConnectionEnded = -2147012866;
constexpr int kInvalidResponse = -2147012744;
constexpr int kSecurityFailure = -2147012721;

Value openRequest(
    ObjectHost &host, const QString &progId, const char *method, const QString &url, bool async = false)
{
    const Value request = host.createObject(progId);
    host.use(request, "open", { text(QString::fromLatin1(method)), text(url), Value::boolean(async) });
    return request;
}

QString urlOf(const RawServer &server, const QString &path = u"/"_s)
{
    return u"http://127.0.0.1:"_s + QString::number(server.port()) + path;
}

void hold(const RawServer *const &server)
{
    while (!server->isStopping())
        ::usleep(10000);
}

}

TEST(Http, SendsWhatTheScriptSetAndShowsTheWholeAnswer)
{
    RawServer server([](int socket, const QByteArray &) {
        RawServer::answer(socket, "HTTP/1.1 201 Made it\r\nContent-Type: text/plain; charset=windows-1252\r\n"
                                  "X-Two: a\r\nX-Two: b\r\nTransfer-Encoding: chunked\r\n\r\n"
                                  "3\r\ngr\xfc\r\n1\r\nn\r\n0\r\n\r\n");
    });
    ObjectHost host;
    const Value request = openRequest(host, u"MSXML2.ServerXMLHTTP"_s, "POST", urlOf(server, u"/a b?q=ü"_s));
    host.use(request, "setRequestHeader", { text(u"Content-Type"_s), text(u"application/json"_s) });
    host.use(request, "setRequestHeader", { text(u"X-Token"_s), text(u"t1"_s) });
    host.use(request, "send", { text(u"{\"name\":\"ü\"}"_s) });

    const QByteArray sent = server.lastRequest();
    EXPECT_TRUE(sent.startsWith("POST /a%20b?q=%C3%BC HTTP/1.1\r\n")) << sent.constData();
    EXPECT_TRUE(sent.contains("\r\nContent-Type: application/json\r\n"));
    EXPECT_TRUE(sent.contains("\r\nX-Token: t1\r\n"));
    EXPECT_FALSE(sent.contains("Expect:"));
    EXPECT_TRUE(sent.endsWith("\r\n\r\n{\"name\":\"\xc3\xbc\"}"));
    EXPECT_EQ(host.text(request, "status"), u"201"_s);
    EXPECT_EQ(host.text(request, "statusText"), u"Made it"_s);
    EXPECT_EQ(host.text(request, "responseText"), u"grün"_s);
    EXPECT_EQ(host.use(request, "responseBody").array()->bytes, QByteArray("gr\xfcn"));
    EXPECT_EQ(host.text(request, "getResponseHeader", { text(u"x-two"_s) }), u"a, b"_s);
    EXPECT_EQ(host.text(request, "getResponseHeader", { text(u"absent"_s) }), u""_s);
    EXPECT_EQ(host.text(request, "getAllResponseHeaders"),
        u"Content-Type: text/plain; charset=windows-1252\r\nX-Two: a\r\nX-Two: b\r\n"
        "Transfer-Encoding: chunked\r\n\r\n"_s);
    EXPECT_EQ(host.text(request, "readyState"), u"4"_s);
    EXPECT_EQ(host.text(host.use(request, "responseStream"), "Size"), u"4"_s);
}

TEST(Http, MethodsBodiesAndRedirects)
{
    RawServer server([](int socket, const QByteArray &request) {
        if (request.contains(" /old "))
            RawServer::answer(socket, "HTTP/1.1 302 Found\r\nLocation: /new\r\nContent-Length: 3\r\n\r\nold");
        else
            RawServer::answer(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
    });
    ObjectHost host;
    struct Row {
        const char *method;
        const char *path;
        const char *body;
        const char *start;
        const char *answer;
    };
    const Row rows[] = {
        { "get", "/x", "ignored", "GET /x HTTP/1.1", "ok" },
        { "HEAD", "/x", "", "HEAD /x HTTP/1.1", "" },
        { "PUT", "/x", "", "PUT /x HTTP/1.1", "ok" },
        { "DELETE", "/x", "", "DELETE /x HTTP/1.1", "ok" },
        { "PATCH", "/x", "p", "PATCH /x HTTP/1.1", "ok" },
        { "POST", "/old", "p", "GET /new HTTP/1.1", "ok" },
    };
    for (const Row &row : rows) {
        const Value request = openRequest(
            host, u"MSXML2.XMLHTTP"_s, row.method, urlOf(server, QString::fromLatin1(row.path)));
        host.use(request, "send", { text(QString::fromLatin1(row.body)) });
        EXPECT_TRUE(server.lastRequest().startsWith(row.start)) << server.lastRequest().constData();
        EXPECT_EQ(host.text(request, "status"), u"200"_s) << row.method;
        EXPECT_EQ(host.text(request, "responseText"), QString::fromLatin1(row.answer)) << row.method;
    }
}

TEST(Http, AsynchronousRequestsGoOnWhileTheScriptLooks)
{
    RawServer server([](int socket, const QByteArray &) {
        ::usleep(50000);
        RawServer::answer(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
    });
    ObjectHost host;
    host.setTimeLimit(5000);
    const Value request = openRequest(host, u"MSXML2.XMLHTTP"_s, "GET", urlOf(server), true);
    host.use(request, "send");
    EXPECT_EQ(errorOf([&] { host.use(request, "responseText"); }), -2147483638);
    while (host.text(request, "readyState") != u"4"_s) { }
    EXPECT_EQ(host.text(request, "responseText"), u"ok"_s);

    const Value second = openRequest(host, u"WinHttp.WinHttpRequest.5.1"_s, "GET", urlOf(server), true);
    host.use(second, "send");
    EXPECT_FALSE(toBoolean(host, host.use(second, "waitForResponse", { Value::real(0.01) })));
    EXPECT_TRUE(toBoolean(host, host.use(second, "waitForResponse")));
    EXPECT_EQ(host.text(second, "status"), u"200"_s);
}

// The handler is told of every state once, may start the next request, and may drop the object.
TEST(Http, HandlersSeeEveryState)
{
    RawServer server([](int socket, const QByteArray &) {
        RawServer::answer(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
    });
    vbs::Engine engine;
    engine.setTimeLimit(5000);
    engine.addCode(uR"(
Dim http, seen, rounds
Sub Changed
  seen = seen & http.readyState
  If http.readyState = 4 And rounds < 1 Then
    rounds = rounds + 1
    http.open "GET", url, False
    http.send
  End If
End Sub
Sub Dropped
  If http.readyState = 2 Then http.abort : Set http = Nothing
End Sub
Sub Fetch(handler)
  Set http = CreateObject("MSXML2.XMLHTTP")
  http.onreadystatechange = handler
  http.open "GET", url, False
  http.send
End Sub
url = ")"_s + urlOf(server) + uR"("
Fetch GetRef("Changed")
Fetch GetRef("Dropped")
)"_s);
    EXPECT_EQ(vbs::toText(engine, engine.evaluate(u"seen & TypeName(http)")), u"12341234Nothing"_s);
}

TEST(Http, BadServersAreErrorsWithTheirNumbers)
{
    RawServer server([](int socket, const QByteArray &request) {
        if (request.contains(" /cut "))
            RawServer::answer(socket, "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc");
        else if (request.contains(" /garbage "))
            RawServer::answer(socket, "\x16\x03\x01nonsense\r\n\r\n");
        else if (request.contains(" /loop "))
            RawServer::answer(socket, "HTTP/1.1 302 Found\r\nLocation: /loop\r\nContent-Length: 0\r\n\r\n");
        else if (request.contains(" /file "))
            RawServer::answer(
                socket, "HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\nContent-Length: 0\r\n\r\n");
        else if (request.contains(" /silent "))
            ::usleep(400000);
    });
    ObjectHost host;
    struct Row { const char *path; int error; };
    const Row rows[]
        = { { "/closed", kConnectionEnded }, { "/cut", kConnectionEnded }, { "/garbage", kInvalidResponse },
              { "/loop", -2147012740 }, { "/file", -2147012890 }, { "/silent", kTimedOut } };
    for (const Row &row : rows) {
        const Value request = openRequest(
            host, u"MSXML2.ServerXMLHTTP.6.0"_s, "GET", urlOf(server, QString::fromLatin1(row.path)));
        host.use(request, "setTimeouts", { number(0), number(1000), number(200), number(200) });
        EXPECT_EQ(errorOf([&] { host.use(request, "send"); }), row.error) << row.path;
    }
}

TEST(Http, NeitherTimeNorMemoryAreExceeded)
{
    const RawServer *self = nullptr;
    RawServer server([&self](int socket, const QByteArray &request) {
        if (request.contains(" /silent "))
            return hold(self);
        RawServer::answer(socket, "HTTP/1.1 200 OK\r\n\r\n");
        if (request.contains(" /trickle ")) {
            for (int i = 0; i < 200 && !self->isStopping(); ++i, ::usleep(10000))
                RawServer::answer(socket, "x");
            return;
        }
        const QByteArray chunk(1 << 20, 'x');
        for (int i = 0; i < 400; ++i)
            RawServer::answer(socket, chunk);
    });
    self = &server;
    ObjectHost host;
    const qint64 before = vbs::memory::used();
    {
        const Value endless = openRequest(host, u"MSXML2.XMLHTTP"_s, "GET", urlOf(server, u"/endless"_s));
        EXPECT_EQ(errorOf([&] { host.use(endless, "send"); }), vbs::err::kOutOfMemory);
    }
    EXPECT_EQ(vbs::memory::used(), before);
    for (const QString &path : { u"/trickle"_s, u"/silent"_s }) {
        const qint64 late = lateness(300, [&](ObjectHost &limited) {
            const Value request = openRequest(limited, u"MSXML2.XMLHTTP"_s, "GET", urlOf(server, path));
            limited.use(request, "send");
        });
        EXPECT_GE(late, 0) << path.toStdString();
        EXPECT_LT(late, 100) << path.toStdString();
    }
}

// A server with a certificate that nobody vouches for: refused, unless the script says that it does not mind.
TEST(Http, CertificatesAreChecked)
{
    const QTemporaryDir folder;
    const QString key = folder.filePath(u"key.pem"_s);
    const QString certificate = folder.filePath(u"certificate.pem"_s);
    QProcess maker;
    maker.start(u"openssl"_s,
        { u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:P-256"_s,
            u"-nodes"_s, u"-subj"_s, u"/CN=localhost"_s, u"-days"_s, u"2"_s, u"-keyout"_s, key, u"-out"_s,
            certificate });
    ASSERT_TRUE(maker.waitForFinished() && maker.exitCode() == 0) << maker.readAllStandardError().constData();
    QProcess server;
    server.start(u"openssl"_s, { u"s_server"_s, u"-accept"_s, u"127.0.0.1:0"_s, u"-www"_s, u"-key"_s, key,
        u"-cert"_s, certificate });
    QByteArray greeting;
    while (!greeting.contains("ACCEPT ") || !greeting.endsWith('\n')) {
        ASSERT_TRUE(server.waitForReadyRead(5000)) << server.readAllStandardError().constData();
        greeting += server.readAllStandardOutput();
    }
    const QByteArray port = greeting.mid(greeting.lastIndexOf(':') + 1).trimmed();
    const QString url = u"https://127.0.0.1:"_s + QString::fromLatin1(port) + u"/"_s;

    ObjectHost host;
    host.setTimeLimit(10000);
    const Value strict = openRequest(host, u"MSXML2.ServerXMLHTTP"_s, "GET", url);
    EXPECT_EQ(errorOf([&] { host.use(strict, "send"); }), kSecurityFailure);
    const Value lenient = openRequest(host, u"MSXML2.ServerXMLHTTP"_s, "GET", url);
    host.use(lenient, "setOption", { number(2), number(13056) });
    host.use(lenient, "send");
    EXPECT_EQ(host.text(lenient, "status"), u"200"_s);
    EXPECT_TRUE(host.text(lenient, "responseText").contains(u"s_server"_s));
    server.kill();
    server.waitForFinished();
}
