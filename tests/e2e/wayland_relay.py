"""A relay between Wayland clients and their compositor that closes layer surfaces by a word of its own."""

import array
import contextlib
import os
import socket
import struct
import threading

MOST_DESCRIPTORS = 28  # that libwayland puts into one message
BIND, GET_LAYER_SURFACE, CLOSED = 0, 0, 1


def receive(connection):
    data, ancillary, _, _ = connection.recvmsg(65536, socket.CMSG_SPACE(MOST_DESCRIPTORS * 4))
    descriptors = array.array("i")
    for _, _, piece in ancillary:
        descriptors.frombytes(piece)
    return data, list(descriptors)


def send(connection, data, descriptors):
    sent = socket.send_fds(connection, [data], descriptors) if descriptors else 0
    connection.sendall(data[sent:])
    for each in descriptors:
        os.close(each)


def messages(buffer):
    """Takes whole messages (wire format: object, size and opcode, arguments) out of the buffer."""
    while len(buffer) >= 8:
        target, word = struct.unpack_from("=II", buffer)
        if len(buffer) < word >> 16:
            return
        message = bytes(buffer[: word >> 16])
        del buffer[: word >> 16]
        yield target, word & 0xFFFF, message[8:]


class Relay:
    def __init__(self, folder, server):
        self.address = str(folder / "relay")
        self.server = server
        # Layer surfaces, by their numbers: those that were ever asked for, and those still to be closed.
        self.opened = []
        self.closing = []
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(self.address)
        self.listener.listen()
        threading.Thread(target=self.accept, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()

    def accept(self):
        with contextlib.suppress(OSError):  # when the listener is closed
            while True:
                client, _ = self.listener.accept()
                server = socket.socket(socket.AF_UNIX)
                server.connect(self.server)
                self.carry(client, server, self.note_requests())
                self.carry(server, client, self.add_events())

    def carry(self, source, sink, look):
        """Hands on what comes, and what `look` answers to it."""

        def run():
            next(look)
            with source, contextlib.suppress(OSError):  # when the other end is gone
                while (received := receive(source))[0]:
                    data, descriptors = received
                    send(sink, data + look.send(data), descriptors)
                sink.shutdown(socket.SHUT_WR)

        threading.Thread(target=run, daemon=True).start()

    def note_requests(self):
        shell, buffer = None, bytearray()
        while True:
            buffer += yield b""
            for target, opcode, arguments in messages(buffer):
                if opcode == BIND and b"zwlr_layer_shell_v1\0" in arguments:
                    shell = struct.unpack("=I", arguments[-4:])[0]
                elif target == shell and opcode == GET_LAYER_SURFACE:
                    self.opened.append(struct.unpack_from("=I", arguments)[0])

    def add_events(self):
        buffer, added = bytearray(), b""
        while True:
            buffer += yield added
            list(messages(buffer))
            added = struct.pack("=II", self.closing.pop(), 8 << 16 | CLOSED) if self.closing and not buffer else b""
