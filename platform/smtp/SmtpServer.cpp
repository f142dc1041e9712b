#include "platform/smtp/SmtpServer.h"

#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/** The parts of an element as typed. */
struct Parts {
    QString scheme;
    QString login;
    QString place; // host and port
    QString query;
};

/** The login ends at the last "@", so that a password may hold one as typed. */
Parts split(const QString &element)
{
    static const QRegularExpression scheme(u"^([A-Za-z]+)://"_s);
    Parts parts;
    QString rest = element.trimmed();
    if (const QRegularExpressionMatch match = scheme.match(rest); match.hasMatch()) {
        parts.scheme = match.captured(1).toLower();
        rest.remove(0, match.capturedLength());
    }
    if (const qsizetype at = rest.lastIndexOf(u'@'); at >= 0) {
        parts.login = rest.left(at);
        rest.remove(0, at + 1);
    }
    const qsizetype query = rest.indexOf(u'?');
    if (query >= 0)
        parts.query = rest.mid(query);
    parts.place = rest.left(query);
    if (parts.place.endsWith(u'/'))
        parts.place.chop(1);
    return parts;
}

/** Resolves %XX; a "%" that begins no such group stands for itself. */
QString decoded(const QString &text)
{
    static const QRegularExpression lonePercent(u"%(?![0-9A-Fa-f]{2})"_s);
    return QUrl::fromPercentEncoding(QString(text).replace(lonePercent, u"%25"_s).toUtf8());
}

/** The host name in the form that goes over the wire; empty when it is none. */
QString hostName(const QString &typed)
{
    static const QRegularExpression plain(u"^[A-Za-z0-9_](?:[A-Za-z0-9_.-]*[A-Za-z0-9_.])?$"_s);
    if (plain.match(typed).hasMatch())
        return typed;
    return QString::fromLatin1(QUrl::toAce(typed));
}

constexpr int kMailPort = 25;
constexpr int kSubmissionTlsPort = 465;

QString encoded(const QString &text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); }

QString loginText(const SmtpServer &server)
{
    if (!server.hasLogin())
        return {};
    const QString password = server.password.isEmpty() ? QString() : u':' + encoded(server.password);
    return encoded(server.user) + password + u'@';
}

bool readPlace(const QString &place, SmtpServer &server)
{
    static const QRegularExpression address(uR"(^\[([0-9A-Fa-f:.]+)\](?::(\d{1,5}))?$)"_s);
    static const QRegularExpression named(uR"(^([^:\[\]/?#\s]+)(?::(\d{1,5}))?$)"_s);
    QRegularExpressionMatch match = address.match(place);
    if (match.hasMatch()) {
        server.host = match.captured(1);
    } else {
        match = named.match(place);
        server.host = match.hasMatch() ? hostName(match.captured(1)) : QString();
    }
    if (match.hasCaptured(2))
        server.port = match.captured(2).toInt();
    return !server.host.isEmpty() && server.port >= 1 && server.port <= 65535;
}

} // namespace

QByteArray SmtpServer::url(const QByteArray &ownName) const
{
    const QString shownHost = host.contains(u':') ? u'[' + host + u']' : host;
    const QString text = (implicitTls ? u"smtps://"_s : u"smtp://"_s) + shownHost + u':' + QString::number(port);
    return text.toLatin1() + '/' + ownName;
}

std::optional<SmtpServer> parseSmtpServer(const QString &element)
{
    const Parts parts = split(element);
    const bool secure = parts.scheme == "smtps"_L1;
    if (!secure && !parts.scheme.isEmpty() && parts.scheme != "smtp"_L1)
        return {};
    if (parts.scheme.isEmpty() && !parts.login.isEmpty())
        return {};
    const bool required = parts.query.compare("?tls=required"_L1, Qt::CaseInsensitive) == 0;
    if (!required && !parts.query.isEmpty())
        return {};
    SmtpServer server;
    if (secure)
        server.port = kSubmissionTlsPort;
    server.implicitTls = secure;
    const qsizetype colon = parts.login.indexOf(u':');
    server.user = decoded(parts.login.left(colon));
    if (colon >= 0)
        server.password = decoded(parts.login.mid(colon + 1));
    server.mustEncrypt = secure || required || server.hasLogin();
    if (!readPlace(parts.place, server))
        return {};
    return server;
}

QString smtpElement(const SmtpServer &server)
{
    QString place = server.host.contains(u':') ? u'[' + server.host + u']' : server.host;
    if (server.port != (server.implicitTls ? kSubmissionTlsPort : kMailPort))
        place += u':' + QString::number(server.port);
    if (server.implicitTls)
        return "smtps://"_L1 + loginText(server) + place;
    if (server.hasLogin())
        return "smtp://"_L1 + loginText(server) + place;
    return server.mustEncrypt ? place + "?tls=required"_L1 : place;
}

QString withHiddenPassword(const QString &element)
{
    static const QRegularExpression scheme(u"^[A-Za-z]+://"_s);
    const QString text = element.trimmed();
    const qsizetype begin = scheme.match(text).capturedLength();
    const qsizetype end = text.lastIndexOf(u'@');
    const qsizetype colon = text.indexOf(u':', begin);
    if (end < begin || colon < 0 || colon > end)
        return text;
    // As many dots for every password: its length is nobody's business either.
    return text.left(colon + 1) + u"••••"_s + text.mid(end);
}

QString withoutLogin(const QString &element)
{
    const Parts parts = split(element);
    const QString scheme = parts.scheme.isEmpty() ? QString() : parts.scheme + "://"_L1;
    return scheme + parts.place + parts.query;
}
