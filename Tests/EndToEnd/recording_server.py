"""A server that is nothing but a socket with TLS, and keeps the requests as they came."""

import json
import socket
import ssl
import threading

OWN_HEADERS = ("content-type", "x-api-key", "conversation-id", "engine", "engine-version")


def completed(*blocks, auto_continue):
    """A status reply that ends a turn; without auto_continue the plugin asks its user before it goes on."""
    return json.dumps({"status": "COMPLETED",
                       "response": {"auto_continue": auto_continue, "response": list(blocks)}})


class Request:
    """One request as it came."""

    def __init__(self, head, body):
        lines = head.decode("ascii").split("\r\n")
        self.line = lines[0]
        self.headers = [tuple(line.split(": ", 1)) for line in lines[1:]]
        self.body = body.decode("utf-8")

    def own_headers(self):
        """Those that the plugin sets itself, in their order; the rest is the HTTP library's."""
        return [header for header in self.headers if header[0].lower() in OWN_HEADERS]


class RecordingServer:
    """Answers each command with a request id and each status with the next of the given replies. A reply may be a
    function that makes it, and takes its time."""

    def __init__(self, service_state, status_replies):
        self.requests = []
        self.head = "HTTP/1.1 200 OK"
        self.status_replies = list(status_replies)
        self.num_commands = 0
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(f"{service_state}/server.pem", f"{service_state}/server-key.pem")
        self.socket = context.wrap_socket(socket.create_server(("127.0.0.1", 0)), server_side=True)
        self.port = self.socket.getsockname()[1]
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            try:
                connection, _ = self.socket.accept()
            except OSError:
                return  # closed, or a client that hung up in the handshake
            threading.Thread(target=self.talk, args=(connection,), daemon=True).start()

    def talk(self, connection):
        with connection, connection.makefile("rb") as stream:
            while request := self.read(stream):
                self.requests.append(request)
                head, reply = self.head.encode("ascii"), self.answer(request).encode("utf-8")
                connection.sendall(b"%s\r\nContent-Length: %d\r\n\r\n" % (head, len(reply)) + reply)

    def read(self, stream):
        head = b""
        while not head.endswith(b"\r\n\r\n"):
            line = stream.readline()
            if not line:
                return None
            head += line
        length = next((int(line.split(b":")[1]) for line in head.split(b"\r\n")
                       if line.lower().startswith(b"content-length:")), 0)
        return Request(head[:-4], stream.read(length))

    def answer(self, request):
        if request.line.startswith("POST"):
            self.num_commands += 1
            return '{"request_id": "id-%d"}' % self.num_commands
        reply = self.status_replies.pop(0)
        return reply() if callable(reply) else reply

    def commands(self):
        return [json.loads(request.body) for request in self.requests if request.line.startswith("POST")]
