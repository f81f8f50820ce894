"""A proxy that knows the token, for test programs that cannot be told one. Everything else passes as it is: who asks for
the proxy's address asks for the server's."""

import http.client
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
import threading

from mcp_client import Client, SECONDS


class TokenProxy:
    def __init__(self, url, token):
        address = Client(url, token).address

        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def pass_on(self):
                own = f":{self.server.server_port}"
                headers = {name: value.replace(own, f":{address.port}") if name.lower() in ("host", "origin") else value
                           for name, value in self.headers.items() if name.lower() not in ("connection", "accept-encoding")}
                body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
                connection = http.client.HTTPConnection(address.hostname, address.port, timeout=SECONDS)
                connection.putrequest(self.command, self.path, skip_host=True, skip_accept_encoding=True)
                for name, value in {**headers, "Authorization": f"Bearer {token}"}.items():
                    connection.putheader(name, value)
                connection.endheaders(body or None)
                answer = connection.getresponse()
                content = answer.read()
                connection.close()
                self.send_response(answer.status)
                for name, value in answer.headers.items():
                    if name.lower() not in ("content-length", "connection", "keep-alive"):
                        self.send_header(name, value)
                self.send_header("Content-Length", str(len(content)))
                self.end_headers()
                self.wfile.write(content)

            do_GET = do_POST = do_DELETE = do_OPTIONS = pass_on

            def log_message(self, *_):
                pass

        class Server(ThreadingHTTPServer):
            def handle_error(self, *_):
                pass  # clients may leave as they like

        self.server = Server(("127.0.0.1", 0), Handler)
        self.url = f"http://127.0.0.1:{self.server.server_port}{address.path}"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()
        self.server.server_close()
