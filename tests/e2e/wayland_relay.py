"""A relay between Wayland clients and their compositor that closes layer surfaces by a word of its own."""

import array
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

    def accept(self):
        while True:
            client, _ = self.listener.accept()
            server = socket.socket(socket.AF_UNIX)
            server.connect(self.server)
            for carry in (self.carry_requests, self.carry_events):
                threading.Thread(target=carry, args=(client, server), daemon=True).start()

    def carry_requests(self, client, server):
        shell, buffer = None, bytearray()
        while True:
            data, descriptors = receive(client)
            if not data:
                server.shutdown(socket.SHUT_RDWR)
                return
            buffer += data
            for target, opcode, arguments in messages(buffer):
                if opcode == BIND and b"zwlr_layer_shell_v1\0" in arguments:
                    shell = struct.unpack("=I", arguments[-4:])[0]
                elif target == shell and opcode == GET_LAYER_SURFACE:
                    self.opened.append(struct.unpack_from("=I", arguments)[0])
            send(server, data, descriptors)

    def carry_events(self, client, server):
        buffer = bytearray()
        while True:
            data, descriptors = receive(server)
            if not data:
                client.shutdown(socket.SHUT_RDWR)
                return
            buffer += data
            list(messages(buffer))
            if not buffer and self.closing and not descriptors:
                data += struct.pack("=II", self.closing.pop(), 8 << 16 | CLOSED)
            send(client, data, descriptors)
