#!/usr/bin/env python3
"""Compares what our readers make of files with what other programs make of them, where both read a file.

    peers_test.py VERDICT NAME=PEER...
        VERDICT    the program model_verdict
        NAME=PEER  a program that tells the same of another library
"""
import json
import pathlib
import subprocess
import sys
import tempfile

from gltf_judge_test import FILES

# Models that Debian's assimp-testmodels has, if it is there.
MODELS = pathlib.Path('/usr/share/assimp/models')
SUFFIXES = ('.3mf', '.glb', '.gltf', '.obj', '.off', '.ply', '.stl')

# Where two differ, and why ours is right, by file and peer.
UNKNOWN_MATERIAL = 'which has another colour for a material that no library defines'
KNOWN = {
    ('box.obj', 'assimp'): UNKNOWN_MATERIAL,
    ('box_longline.obj', 'assimp'): UNKNOWN_MATERIAL,
    ('box_without_lineending.obj', 'assimp'): UNKNOWN_MATERIAL,
    ('cube_usemtl.obj', 'assimp'): UNKNOWN_MATERIAL,
    ('testmixed.obj', 'assimp'): UNKNOWN_MATERIAL,
    ('cube_mtllib_after_g.obj', 'assimp'): 'which guesses the name of a library',
    ('box_UTF16BE.obj', 'assimp'): 'which reads no letters of two bytes',
    ('simple_skin.gltf', 'assimp'): 'which leaves skins where their joints find them',
    ('simple_skin.gltf', 'tinygltf'): 'which leaves skins where their joints find them',
}


def verdicts(program, paths):
    """What a program says of each file; of those behind one that it dies of, nothing."""
    run = subprocess.run([program, *paths], capture_output=True, text=True)
    found = [json.loads(line) for line in run.stdout.splitlines() if line.startswith('{"read"')]
    return found + [{'read': False, 'reason': 'the program died'}] * (len(paths) - len(found))


def differ(ours, theirs):
    if bool(ours) != bool(theirs):
        return True
    size = max((abs(x) for x in ours or []), default=0)
    return any(abs(a - b) > 1e-4 * size for a, b in zip(ours or [], theirs or []))


def mistakes_in(path, peer, ours, theirs):
    if ours['triangles'] != theirs['triangles']:
        yield f'{path}: {ours["triangles"]} triangles, {theirs["triangles"]} for {peer}'
    if theirs['bounds'] and differ(ours['bounds'], theirs['bounds']):
        yield f'{path}: bounds {ours["bounds"]}, {theirs["bounds"]} for {peer}'
    for name, color in ours['colors'].items():
        other = theirs['colors'].get(name)
        if name and other and differ(color, other):
            yield f'{path}: material {name} is {color}, {other} for {peer}'


def main():
    verdict, *peers = sys.argv[1:]
    peers = dict(peer.split('=', 1) for peer in peers)
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for name, data, is_valid, is_read in FILES:
            if is_valid and is_read:
                suffix = 'glb' if data[:4] == b'glTF' else 'gltf'
                paths.append(pathlib.Path(folder) / f'{name}.{suffix}')
                paths[-1].write_bytes(data)
        paths += sorted(p for p in MODELS.rglob('*') if p.suffix.lower() in SUFFIXES and 'invalid' not in p.parts)
        ours = verdicts(verdict, paths)
        read = [(path, our) for path, our in zip(paths, ours) if our['read']]
        mistakes = []
        for peer, program in peers.items():
            asked = [path for path, _ in read if peer != 'tinygltf' or path.suffix in ('.glb', '.gltf')]
            told = dict(zip(asked, verdicts(program, asked)))
            compared = [(path, our) for path, our in read if told.get(path, {'read': False})['read']]
            print(f'{peer}: {len(compared)} files compared, {len(asked) - len(compared)} not read by it')
            if len(compared) < 10:
                mistakes.append(f'{peer} read next to nothing')
            for path, our in compared:
                found = list(mistakes_in(path.name, peer, our, told[path]))
                if found and (path.name, peer) in KNOWN:
                    print(f'{path.name}: other for {peer}, {KNOWN[path.name, peer]}')
                else:
                    mistakes += found
    sys.exit('\n'.join(mistakes) or 0)


if __name__ == '__main__':
    main()
