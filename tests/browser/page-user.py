#!/usr/bin/env python3
"""Stands between a browser and the virtual scale's page, and does at the right moment what a shop would do.

page-user.py PAGE READY request PORT HEX   when the page asks for its content a second time, the scale gets
                                           this request first
page-user.py PAGE READY click ID           the first page that passes gets a script that clicks an element

PAGE is the page's address. READY is a file that gets the address for the browser. Ends when it is killed.
"""

import http.client
import http.server
import re
import socket
import sys
import urllib.parse

page, ready, action = sys.argv[1:4]
contents = 0
clicked = False


def send_request(port, frame):
    with socket.create_connection(("127.0.0.1", int(port)), 10) as scale:
        scale.sendall(bytes.fromhex(frame))
        scale.settimeout(10)
        scale.recv(100)


def before(path):
    global contents
    if action != "request" or not path.startswith("/content"):
        return
    contents += 1
    if contents == 2:
        send_request(*sys.argv[4:6])


def with_click(path, headers, body):
    """The page's own rule lets no script run that lacks its nonce."""
    global clicked
    nonce = re.search(r"script-src 'nonce-([^']+)'", headers.get("Content-Security-Policy", ""))
    if action != "click" or clicked or not nonce:
        return body
    clicked = True
    script = f"<script nonce=\"{nonce[1]}\">document.getElementById('{sys.argv[4]}').click();</script></body>"
    return body.replace(b"</body>", script.encode())


class User(http.server.BaseHTTPRequestHandler):
    def pass_on(self):
        before(self.path)
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        scale = http.client.HTTPConnection(urllib.parse.urlsplit(page).netloc, timeout=10)
        scale.request(self.command, self.path, body, dict(self.headers))
        answer = scale.getresponse()
        body = with_click(self.path, answer.headers, answer.read())
        self.send_response(answer.status)
        for name, value in answer.headers.items():
            if name not in ("Content-Length", "Connection"):
                self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    do_GET = do_POST = pass_on

    def log_message(self, *_):
        pass


with http.server.ThreadingHTTPServer(("127.0.0.1", 0), User) as server:
    with open(ready, "w", encoding="ascii") as file:
        file.write(f"http://127.0.0.1:{server.server_port}/")
    server.serve_forever()
