"""A model server that plays a conversation from a data file: what it must hear, and what it says then.

The file is a list of {"hears": TEXT, "says": {"text": TEXT, "calls": [{"name", "input"}]}}. Hearing means that the text
is in what follows the model's latest message. Run as a program, it prints its address and plays one file.
"""

import http.server
import json
import sys
import threading


class ScriptedModel:
    """A context manager; problems lists what was not as the file says."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            self.exchanges = json.load(file)
        self.next = 0
        self.problems = []
        self.requests = []
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
                outer.requests.append({"headers": dict(self.headers), "body": body})
                reply = outer.answer(self.path, body)
                self.send_response(200 if reply else 400)
                self.send_header("Content-Type", "text/event-stream")
                self.end_headers()
                self.wfile.write(reply.encode())

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.url = f"http://127.0.0.1:{self.server.server_address[1]}/v1"
        self.thread = threading.Thread(target=self.server.serve_forever, daemon=True)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()

    def answer(self, path, body):
        """The events of the reply; nothing, with a problem noted, for a request that was not expected."""
        heard = latest_of_user(body["messages"])
        if path != "/v1/chat/completions" or self.next >= len(self.exchanges):
            self.problems.append(f"unexpected request {path}: {heard}")
            return ""
        exchange = self.exchanges[self.next]
        if exchange["hears"] not in heard:
            self.problems.append(f"request {self.next + 1} lacks {exchange['hears']!r}: {heard}")
            return ""
        self.next += 1
        return "".join(f"data: {event}\n\n" for event in events_of(exchange["says"], self.next))

    def configuration(self):
        """A configuration of the service for this server."""
        return f'[server]\nbase_url = "{self.url}"\nformat = "chat-completions"\nmodel = "scripted"\n'


def latest_of_user(messages):
    at = max((index for index, message in enumerate(messages) if message["role"] == "assistant"), default=0)
    return "\n".join(message["content"] for message in messages[at + 1:])


def events_of(says, number):
    delta = {"content": says.get("text", "")}
    calls = [{"index": index, "id": f"call_{number}_{index}", "type": "function",
              "function": {"name": call["name"], "arguments": json.dumps(call["input"])}}
             for index, call in enumerate(says.get("calls", []))]
    if calls:
        delta["tool_calls"] = calls
    yield json.dumps({"choices": [{"index": 0, "delta": delta, "finish_reason": None}]})
    yield json.dumps({"choices": [{"index": 0, "delta": {}, "finish_reason": "tool_calls" if calls else "stop"}]})
    yield "[DONE]"


if __name__ == "__main__":
    with ScriptedModel(sys.argv[1]) as model:
        print(model.url, flush=True)
        threading.Event().wait()
