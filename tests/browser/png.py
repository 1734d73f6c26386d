"""Reads the pictures that a browser makes: eight bits a channel, not interlaced."""

import struct
import zlib


class Picture:
    def __init__(self, width, height, channels, rows):
        self.width, self.height = width, height
        self._channels, self._rows = channels, rows

    def at(self, x, y):
        return tuple(self._rows[y][x * self._channels:(x + 1) * self._channels])

    def colours(self, step=3):
        return {self.at(x, y) for y in range(0, self.height, step)
                for x in range(0, self.width, step)}


def _chunks(data):
    at = 8
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        yield kind, data[at + 8:at + 8 + size]
        at += 12 + size


def _undone(method, line, above, channels):
    """The line without its filter."""
    if method == 2:
        return bytearray((a + b) & 255 for a, b in zip(line, above))
    row = bytearray(line)
    for i in range(len(row)):
        left = row[i - channels] if i >= channels else 0
        up = above[i]
        if method == 1:
            row[i] = (row[i] + left) & 255
        elif method == 3:
            row[i] = (row[i] + (left + up) // 2) & 255
        elif method == 4:
            corner = above[i - channels] if i >= channels else 0
            guess = left + up - corner
            nearest = min((abs(guess - left), 0, left), (abs(guess - up), 1, up),
                          (abs(guess - corner), 2, corner))[2]
            row[i] = (row[i] + nearest) & 255
    return row


def read(data):
    assert data[:8] == b"\x89PNG\r\n\x1a\n", "it is no PNG"
    parts = {}
    for kind, content in _chunks(data):
        parts[kind] = parts.get(kind, b"") + content
    width, height, depth, colour = struct.unpack(">IIBB", parts[b"IHDR"][:10])
    channels = {2: 3, 6: 4}[colour]
    assert depth == 8, "not eight bits a channel"
    raw, size, rows = zlib.decompress(parts[b"IDAT"]), width * channels, []
    above = bytearray(size)
    for y in range(height):
        start = y * (size + 1)
        above = _undone(raw[start], raw[start + 1:start + 1 + size], above, channels)
        rows.append(above)
    return Picture(width, height, channels, rows)
