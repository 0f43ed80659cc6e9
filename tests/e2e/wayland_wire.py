"""Wayland's wire format: a virtual mouse, and a relay that can send layer surfaces the event that closes them."""

import contextlib
import functools
import os
import socket
import struct
import threading

MOST_DESCRIPTORS = 28  # that libwayland puts into one message
CLOSED = 1


def message(target, opcode, *words):
    """A message of 32-bit arguments and texts in bytes."""
    body = b"".join(
        struct.pack(f"=I{(len(word) + 4) // 4 * 4}s", len(word) + 1, word) if isinstance(word, bytes) else struct.pack("=I", word)
        for word in words
    )
    return struct.pack("=II", target, 8 + len(body) << 16 | opcode) + body


class Mouse:
    """A virtual pointer."""

    NAME = b"zwlr_virtual_pointer_manager_v1"
    REGISTRY, MANAGER, POINTER = 2, 3, 4
    BUTTONS = {"left": 0x110, "right": 0x111}

    def __init__(self, server):
        self.connection = socket.socket(socket.AF_UNIX)
        self.connection.connect(server)
        self.connection.sendall(message(1, 1, self.REGISTRY))
        offered = b""
        while self.NAME not in offered:
            offered += self.connection.recv(65536)
        (name,) = struct.unpack_from("=I", offered, offered.index(self.NAME) - 8)
        bind = message(self.REGISTRY, 0, name, self.NAME, 1, self.MANAGER)
        self.connection.sendall(bind + message(self.MANAGER, 0, 0, self.POINTER))
        self.last = self.POINTER

    def click(self, left, top, width, height, button):
        """Clicks at that point of a desktop of that size, and waits until the compositor has passed it on."""
        moving = message(self.POINTER, 1, 0, left, top, width, height) + message(self.POINTER, 4)
        press = [message(self.POINTER, 2, 0, self.BUTTONS[button], down) + message(self.POINTER, 4) for down in (1, 0)]
        self.last += 1
        self.connection.sendall(moving + b"".join(press) + message(1, 0, self.last))
        answer = b""
        while struct.pack("=II", self.last, 12 << 16) not in answer:
            answer += self.connection.recv(65536)


class Relay:
    def __init__(self, folder, server):
        self.address = str(folder / "relay")
        self.server = server
        # The ids of all layer surfaces that were ever made, and of those still to be closed.
        self.opened = []
        self.closing = []
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(self.address)
        self.listener.listen()
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            client, _ = self.listener.accept()
            server = socket.socket(socket.AF_UNIX)
            server.connect(self.server)
            # The toolkit has a connection of its own, without such surfaces.
            opened = []
            looks = functools.partial(self.note_requests, opened), functools.partial(self.add_events, opened)
            for ends in ((client, server, looks[0]), (server, client, looks[1])):
                threading.Thread(target=self.carry, args=ends, daemon=True).start()

    def carry(self, source, sink, look):
        """Forwards everything, and what `look` returns for it."""
        with source, contextlib.suppress(OSError):  # when the other end is gone
            while (received := socket.recv_fds(source, 65536, MOST_DESCRIPTORS))[0]:
                data, descriptors = received[:2]
                sent = socket.send_fds(sink, [data], descriptors) if descriptors else 0
                sink.sendall(data[sent:] + look(data))
                for each in descriptors:
                    os.close(each)
            sink.shutdown(socket.SHUT_WR)

    def note_requests(self, opened, data):
        # The agent's layer surfaces: five words, the first of them the new id, come before the name.
        start = -1
        while (start := data.find(b"quilexhelper\0", start + 1)) >= 20:
            opened += struct.unpack_from("=I", data, start - 20)
            self.opened.append(opened[-1])
        return b""

    def add_events(self, opened, _):
        return message(self.closing.pop(), CLOSED) if opened and self.closing else b""
