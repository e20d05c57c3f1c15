"""The host for tests of the HTTP client and of its users: the query of a request says how it is answered, so that tests
in C++ need no other way to the services.

    https://tests.corvaneworks.example/ANY/PATH?status=500&body=TEXT

| Query        | Answer                                                                                         |
|--------------|------------------------------------------------------------------------------------------------|
| none         | 200 with the request itself, as a line of requests.jsonl (`connection`, `method`, `path`, ...)   |
| status=N     | that status                                                                                    |
| body=TEXT    | that body                                                                                      |
| size=N       | a body of N bytes, the byte at i being i modulo 251                                            |
| chunked=1    | in chunks                                                                                      |
| piece=N      | N bytes of body at a time: a chunk, a TLS record                                               |
| delay=N      | after N seconds (a decimal number)                                                             |
| cut=HOW      | reset, close, reset half-way, close half-way (of the body); a blank is written +               |
| raw=TEXT     | TEXT in place of an HTTP answer                                                                |
| location=URL | a header Location; for status=302                                                              |

GET /requests?path=PREFIX&count=N gives a JSON array of the requests so far whose path begins so, once there are N of
them or after 20 seconds. Each test uses a path of its own. Nothing listens on the host's port 444.

Under Wine a body that is cut half-way reads as a short body that ended well. Only a reset in the middle of a long one
(20 MB) makes a read fail.
"""
from urllib.parse import parse_qsl, urlsplit

from harness.services.server import Answer, Request


def answer(request: Request, services) -> Answer:
    parts = urlsplit(request.path)
    query = dict(parse_qsl(parts.query, keep_blank_values=True))
    if parts.path == "/requests":
        found = services.wait_for(int(query.get("count", 0)), "tests", query["path"])
        return Answer([seen.row() for seen in found])
    status = int(query.get("status", 200))
    body = query.get("body")
    if "size" in query:
        size = int(query["size"])
        body = (bytes(range(251)) * (size // 251 + 1))[:size]
    if body is None:
        request.status = status
        body = request.row()
    return Answer(body, status, {"Location": query["location"]} if "location" in query else {},
                  float(query.get("delay", 0)), query.get("cut", ""), query["raw"].encode() if "raw" in query else None,
                  "chunked" in query, int(query.get("piece", 0)))
