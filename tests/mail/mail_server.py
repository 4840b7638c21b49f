"""A mail server for one test: prints its port, then one line of JSON about each mail that it gets.

The contents of parts go into files of the folder that is the argument, since they may be large. Ends when its
standard input does; with 77 where aiosmtpd is not installed.
"""
import asyncio
import email.header
import email.policy
import email.utils
import json
import os
import sys

try:
    from aiosmtpd.smtp import SMTP
except ImportError:
    sys.exit(77)


def decoded(message, field):
    """The bytes of a header as sent, in hexadecimal: encoded words decoded, nothing else interpreted."""
    raw = next((value for name, value in message.raw_items() if name.lower() == field), "")
    pieces = [p.encode("ascii", "surrogateescape") if isinstance(p, str) else p
              for p, _ in email.header.decode_header("".join(raw.splitlines()))]
    return b"".join(pieces).hex()


class Handler:
    def __init__(self, folder):
        self.folder = folder
        self.count = 0

    async def handle_DATA(self, server, session, envelope):
        message = email.message_from_bytes(envelope.content, policy=email.policy.default)
        parts = [p for p in message.walk() if not p.is_multipart()]
        defects = [repr(d) for part in message.walk() for d in part.defects]
        facts = []
        for number, part in enumerate(parts):
            for name in part.keys():
                defects += [f"{name}: {d!r}" for d in part[name].defects]
            path = os.path.join(self.folder, f"{self.count}.{number}")
            with open(path, "wb") as file:
                file.write(part.get_payload(decode=True))
            place = part["content-disposition"]
            filename = place and place.params.get("filename")
            facts.append({"path": path, "type": part.get_content_type(), "charset": part.get_content_charset(),
                          "name": None if filename is None else filename.encode("utf-8", "surrogateescape").hex()})
        for name in message.keys():
            defects += [f"{name}: {d!r}" for d in message[name].defects]
        with open(os.path.join(self.folder, f"{self.count}.raw"), "wb") as file:
            file.write(envelope.content)
        self.count += 1
        date = email.utils.parsedate_to_datetime(message["date"]) if message["date"] else None
        print(json.dumps({
            "from": envelope.mail_from, "to": envelope.rcpt_tos, "parts": facts, "defects": defects,
            "multipart": message.is_multipart(), "date": date and date.timestamp(),
            "fields": {name.lower(): decoded(message, name.lower()) for name in message.keys()},
            "names": [a.display_name.encode("utf-8", "surrogateescape").hex()
                      for f in ("from", "to", "cc", "reply-to") if message[f] for a in message[f].addresses],
        }), flush=True)
        return "250 taken"


async def serve(folder):
    loop = asyncio.get_running_loop()
    handler = Handler(folder)
    server = await loop.create_server(lambda: SMTP(handler, hostname="test"), "127.0.0.1", 0)
    print(server.sockets[0].getsockname()[1], flush=True)
    await loop.run_in_executor(None, sys.stdin.read)


asyncio.run(serve(sys.argv[1]))
