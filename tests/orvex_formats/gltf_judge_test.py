#!/usr/bin/env python3
"""Makes files of glTF, right and wrong, and compares what gltf-validator says of them with what the reader does.

    gltf_judge_test.py NODE VALIDATOR VERDICT
        NODE       the program that runs JavaScript
        VALIDATOR  the folder of the npm package gltf-validator
        VERDICT    the program model_verdict
"""
import base64
import copy
import json
import pathlib
import struct
import subprocess
import sys
import tempfile

from make_gltf import File, glb, textured_cube


def cube():
    """The text and the bytes of the textured cube."""
    data = textured_cube()
    size = struct.unpack('<I', data[12:16])[0]
    return json.loads(data[20:20 + size]), data[28 + size:]


def changed(change):
    text, data = cube()
    change(text)
    return glb(text, data)


def at(*path_and_value):
    """A change of one value."""
    *path, last, value = path_and_value

    def change(text):
        for step in path:
            text = text[step]
        if value is None:
            del text[last]
        else:
            text[last] = value
    return changed(change)


def primitive(mode, count=6, **more):
    file = File()
    places = file.places([(i % 3, i // 3, 0) for i in range(count)])
    return glb(file.text(meshes=[{'primitives': [{'attributes': {'POSITION': places}, 'mode': mode, **more}]}],
                         nodes=[{'mesh': 0}], scenes=[{'nodes': [0]}], scene=0), file.data)


def sparse(places):
    file = File()
    base = file.places([(0, 0, 0), (1, 0, 0), (0, 1, 0)])
    at_view = file.view(struct.pack('<%dH' % len(places), *places))
    values = file.view(struct.pack('<3f', 0, 2, 0) * len(places))
    file.accessors[base].update(max=[0, 2, 0], sparse={
        'count': len(places), 'indices': {'bufferView': at_view, 'componentType': 5123},
        'values': {'bufferView': values}})
    return glb(file.text(meshes=[{'primitives': [{'attributes': {'POSITION': base}}]}], nodes=[{'mesh': 0}],
                         scenes=[{'nodes': [0]}]), file.data)


def as_text():
    text, data = cube()
    text = copy.deepcopy(text)
    text['buffers'][0]['byteLength'] = len(data)
    text['buffers'][0]['uri'] = 'data:application/octet-stream;base64,' + base64.b64encode(data).decode()
    return json.dumps(text).encode()


def extended(material):
    return changed(lambda text: (text['materials'][0].update(extensions=material),
                                 text.update(extensionsUsed=list(material))))


# Name, bytes, whether the judge calls it valid, whether it is read. Where both differ, the reader is either more
# careful than the rules, or does what a wrong file plainly means.
FILES = [
    ('cube', textured_cube(), True, True),
    ('text', as_text(), True, True),
    ('points', primitive(0), True, True),
    ('lines', primitive(1), True, True),
    ('loop', primitive(2), True, True),
    ('line strip', primitive(3), True, True),
    ('triangles', primitive(4), True, True),
    ('strip', primitive(5), True, True),
    ('fan', primitive(6), True, True),
    ('sparse', sparse([1, 2]), True, True),
    ('unlit', extended({'KHR_materials_unlit': {}}), True, True),
    ('index of refraction', extended({'KHR_materials_ior': {'ior': 1.3}}), True, True),
    ('emission', extended({'KHR_materials_emissive_strength': {'emissiveStrength': 3}}), True, True),
    ('varnish', extended({'KHR_materials_clearcoat': {'clearcoatFactor': 1}}), True, True),
    ('highlight', extended({'KHR_materials_specular': {'specularFactor': 0.5}}), True, True),
    ('nothing', b'{"asset":{"version":"2.0"}}', True, True),
    ('unknown extension', at('extensionsUsed', ['ABC_d']), True, True),
    ('matrix', at('nodes', 2, {'mesh': 1, 'matrix': [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}), True, True),
    ('mirrored', at('nodes', 2, 'scale', [-1, 1, 1]), True, True),
    ('other version', at('asset', 'version', '3.0'), False, False),
    ('no version', at('asset', 'version', None), False, False),
    ('mode', primitive(7), False, False),
    ('sparse beyond', sparse([1, 3]), False, False),
    ('sparse unsorted', sparse([2, 1]), False, False),
    ('ring', at('nodes', 1, 'children', [0]), False, False),
    ('two parents', at('nodes', 2, 'children', [1]), False, False),
    ('mesh beyond', at('nodes', 2, 'mesh', 7), False, False),
    ('negative mesh', at('nodes', 2, 'mesh', -1), False, False),
    ('half a mesh', at('nodes', 2, 'mesh', 0.5), False, False),
    ('scene beyond', at('scene', 3), False, False),
    ('no root', at('scenes', 0, 'nodes', [1]), False, False),
    ('huge count', at('accessors', 0, 'count', 4294967295), False, False),
    ('no count', at('accessors', 0, 'count', None), False, False),
    ('stride 0', at('bufferViews', 0, 'byteStride', 0), False, False),
    ('stride 1', at('bufferViews', 0, 'byteStride', 1), False, False),
    ('view past the end', at('bufferViews', 0, 'byteLength', 99999), False, False),
    ('type of numbers', at('accessors', 0, 'componentType', 5124), False, False),
    ('askew', at('accessors', 1, 'byteOffset', 2), False, False),
    ('index beyond', at('accessors', 0, 'count', 20), False, False),
    ('texture beyond', at('materials', 0, 'pbrMetallicRoughness', 'baseColorTexture', 'index', 5), False, False),
    ('alpha', at('materials', 0, 'alphaMode', 'HALF'), True, True),
    ('required', changed(lambda t: t.update(extensionsUsed=['ABC_d'], extensionsRequired=['ABC_d'])), True, False),
    ('cut', textured_cube()[:1500], False, False),
    ('broken JSON', b'{"asset":{"version":"2.0"},}', False, False),
    # What is wrong here does no harm.
    ('beyond its range', at('materials', 0, 'pbrMetallicRoughness', 'metallicFactor', 7), False, True),
    ('least and largest', at('accessors', 0, 'max', [9, 9, 9]), False, True),
]
COUNTS = ('vertices', 'triangles', 'materials', 'draws')


def lines_of(command):
    return [json.loads(line) for line in subprocess.run(command, check=True, capture_output=True, text=True)
            .stdout.splitlines()]


def mistakes_in(name, judge, ours, is_valid, is_read):
    if judge['valid'] != is_valid:
        yield f'{name}: the judge says {judge}'
    if ours['read'] != is_read:
        yield f'{name}: the reader says {ours}'
    for count in COUNTS:
        # Lines are told by their ends, which several may share in the file.
        if count == 'vertices' and ours.get('lines'):
            continue
        if is_valid and is_read and judge[count] != ours[count]:
            yield f'{name}: {judge[count]} {count} for the judge, {ours[count]} for the reader'


def main():
    node, validator, verdict = sys.argv[1:]
    here = pathlib.Path(__file__).parent
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for i, (_, data, _, _) in enumerate(FILES):
            suffix = 'glb' if data[:4] == b'glTF' else 'gltf'
            paths.append(pathlib.Path(folder) / f'{i}.{suffix}')
            paths[-1].write_bytes(data)
        judged = lines_of([node, here / 'gltf_judge.js', validator, *paths])
        read = lines_of([verdict, *paths])
    if not len(judged) == len(read) == len(FILES):
        sys.exit(f'{len(FILES)} files, {len(judged)} judged, {len(read)} read')
    mistakes = []
    print(f'{"file":22}{"judge":30}{"reader":8}counts')
    for (name, _, is_valid, is_read), judge, ours in zip(FILES, judged, read):
        counts = ' '.join(f'{ours[count]}/{judge.get(count)}' for count in COUNTS) if ours['read'] else ours['reason']
        print(f'{name:22}{"valid" if judge["valid"] else judge["first"]:30}{"read" if ours["read"] else "refused":8}'
              f'{counts}')
        mistakes += mistakes_in(name, judge, ours, is_valid, is_read)
    sys.exit('\n'.join(mistakes) or 0)


if __name__ == '__main__':
    main()
