"""A mail server on loopback for the tests: prints its port, then one JSON line a mail."""
import argparse
import asyncio
import email
import email.policy
import json
import logging
import ssl
import warnings

from aiosmtpd.smtp import SMTP, AuthResult


class Handler:
    async def handle_DATA(self, server, session, envelope):
        message = email.message_from_bytes(envelope.original_content, policy=email.policy.default)
        print(json.dumps({
            "from": envelope.mail_from,
            "to": envelope.rcpt_tos,
            "tls": server.transport.get_extra_info("sslcontext") is not None,
            "login": session.auth_data.decode() if session.auth_data else "",
            "data": envelope.original_content.decode("utf-8", "replace"),
            "subject": message["Subject"],
            "text": message.get_content(),
            "headers": sorted(message.keys()),
            "id": message["Message-ID"],
            "date": str(message["Date"].datetime) if message["Date"] else "",
            "defects": [repr(d) for d in message.defects],
        }), flush=True)
        return "250 taken"


def authenticator(expected):
    def check(server, session, envelope, mechanism, data):
        given = data.login.decode() + ":" + data.password.decode()
        # The reply repeats the password on purpose: no client may pass that on.
        if given != expected:
            return AuthResult(success=False, handled=False,
                              message="535 5.7.8 it's the wrong password: " + data.password.decode())
        return AuthResult(success=True, auth_data=data.login)
    return check


async def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--certificate")
    parser.add_argument("--starttls", action="store_true")
    parser.add_argument("--smtps", action="store_true")
    parser.add_argument("--auth")
    options = parser.parse_args()
    context = None
    if options.certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(options.certificate)
    arguments = {"enable_SMTPUTF8": True, "hostname": "test"}
    if options.starttls:
        arguments["tls_context"] = context
    if options.auth:
        arguments.update(authenticator=authenticator(options.auth), auth_required=True,
                         auth_require_tls=not options.smtps)
    server = await asyncio.get_running_loop().create_server(
        lambda: SMTP(Handler(), **arguments), "127.0.0.1", options.port,
        ssl=context if options.smtps else None)
    print(server.sockets[0].getsockname()[1], flush=True)
    await server.serve_forever()


# Clients that break off are what the tests are about; nobody needs to read of it.
logging.disable(logging.CRITICAL)
warnings.simplefilter("ignore")
asyncio.run(main())
