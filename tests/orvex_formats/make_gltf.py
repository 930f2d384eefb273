#!/usr/bin/env python3
"""Makes sample files of glTF: a textured cube, standing on a floor, as a GLB.

    make_gltf.py FOLDER
"""
import json
import pathlib
import struct
import sys
import zlib


def png(width, height, pixel):
    """A picture whose pixels, from the upper left on, are pixel(x, y) = (red, green, blue)."""
    rows = b''.join(b'\0' + bytes(v for x in range(width) for v in pixel(x, y)) for y in range(height))

    def chunk(kind, data):
        return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))

    head = struct.pack('>IIBBBBB', width, height, 8, 2, 0, 0, 0)
    return b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', head) + chunk(b'IDAT', zlib.compress(rows)) + chunk(b'IEND', b'')


def glb(text, data):
    text = json.dumps(text).encode()
    text += b' ' * (-len(text) % 4)
    data += b'\0' * (-len(data) % 4)
    chunks = struct.pack('<I4s', len(text), b'JSON') + text + struct.pack('<I4s', len(data), b'BIN\0') + data
    return struct.pack('<4sII', b'glTF', 2, 12 + len(chunks)) + chunks


class File:
    """A file whose numbers lie in one buffer."""

    def __init__(self):
        self.data = b''
        self.views, self.accessors = [], []

    def view(self, data, **more):
        self.data += b'\0' * (-len(self.data) % 4)
        self.views.append({'buffer': 0, 'byteOffset': len(self.data), 'byteLength': len(data), **more})
        self.data += data
        return len(self.views) - 1

    def floats(self, kind, rows, **more):
        view = self.view(b''.join(struct.pack('<%df' % len(row), *row) for row in rows))
        self.accessors.append({'bufferView': view, 'componentType': 5126, 'count': len(rows), 'type': kind, **more})
        return len(self.accessors) - 1

    def places(self, rows):
        return self.floats('VEC3', rows, min=[min(c) for c in zip(*rows)], max=[max(c) for c in zip(*rows)])

    def indices(self, numbers):
        view = self.view(struct.pack('<%dH' % len(numbers), *numbers))
        self.accessors.append({'bufferView': view, 'componentType': 5123, 'count': len(numbers), 'type': 'SCALAR'})
        return len(self.accessors) - 1

    def text(self, **more):
        return {'asset': {'version': '2.0'}, 'buffers': [{'byteLength': len(self.data)}],
                'bufferViews': self.views, 'accessors': self.accessors, **more}


# Each side of a cube: what lies to its right, above it, and before it.
SIDES = [((1, 0, 0), (0, 1, 0), (0, 0, 1)), ((-1, 0, 0), (0, 1, 0), (0, 0, -1)),
         ((0, 0, -1), (0, 1, 0), (1, 0, 0)), ((0, 0, 1), (0, 1, 0), (-1, 0, 0)),
         ((1, 0, 0), (0, 0, -1), (0, 1, 0)), ((1, 0, 0), (0, 0, 1), (0, -1, 0))]


def arrow(x, y):
    """An arrow that points up, orange on blue; red marks the upper left corner."""
    if x < 8 and y < 8:
        return (230, 30, 30)
    head = 8 <= y < 32 and abs(x - 31.5) < (y - 8) * 0.9
    shaft = 32 <= y < 56 and abs(x - 31.5) < 8
    return (250, 150, 20) if head or shaft else (30, 60, 170)


def textured_cube():
    file = File()
    places, normals, uvs, corners = [], [], [], []
    for right, up, front in SIDES:
        first = len(places)
        for u, v in ((0, 1), (1, 1), (1, 0), (0, 0)):
            places.append(tuple(f + r * (2 * u - 1) + o * (1 - 2 * v) for r, o, f in zip(right, up, front)))
            normals.append(front)
            uvs.append((u, v))
        corners += [first + i for i in (0, 1, 2, 0, 2, 3)]
    attributes = {'POSITION': file.places(places), 'NORMAL': file.floats('VEC3', normals),
                  'TEXCOORD_0': file.floats('VEC2', uvs)}
    cube = {'attributes': attributes, 'indices': file.indices(corners), 'material': 0}
    floor = {'attributes': {'POSITION': file.places([(-3, 0, 3), (3, 0, 3), (-3, 0, -3), (3, 0, -3)]),
                            'NORMAL': file.floats('VEC3', [(0, 1, 0)] * 4)}, 'mode': 5, 'material': 1}
    picture = file.view(png(64, 64, arrow))
    return glb(file.text(
        meshes=[{'name': 'cube', 'primitives': [cube]}, {'name': 'floor', 'primitives': [floor]}],
        materials=[{'name': 'arrow', 'pbrMetallicRoughness': {'baseColorTexture': {'index': 0},
                                                              'metallicFactor': 0, 'roughnessFactor': 0.8}},
                   {'name': 'green', 'pbrMetallicRoughness': {'baseColorFactor': [0.05, 0.5, 0.1, 1],
                                                              'metallicFactor': 0}}],
        textures=[{'source': 0}], images=[{'bufferView': picture, 'mimeType': 'image/png', 'name': 'arrow'}],
        nodes=[{'name': 'root', 'children': [1, 2]},
               {'mesh': 0, 'translation': [0, 1, 0], 'rotation': [0, 0.19509032, 0, 0.98078528]}, {'mesh': 1}],
        scenes=[{'nodes': [0]}], scene=0), file.data)


if __name__ == '__main__':
    folder = pathlib.Path(sys.argv[1])
    (folder / 'cube.glb').write_bytes(textured_cube())
