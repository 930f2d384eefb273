"""What the module is shown by, as it stands in its pages. Wants a folder to work in."""

import os
import struct
import sys

import numpy

os.chdir(sys.argv[1])


def write_models():
    """A triangle as model.glb, and as model.obj."""
    places = struct.pack("<9f", 0, 0, 0, 1, 0, 0, 0, 1, 0)
    json = (b'{"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],'
            b'"meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],'
            b'"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3",'
            b'"min":[0,0,0],"max":[1,1,0]}],'
            b'"bufferViews":[{"buffer":0,"byteLength":36}],"buffers":[{"byteLength":36}]}')
    json += b" " * (-len(json) % 4)
    with open("model.glb", "wb") as file:
        file.write(struct.pack("<III", 0x46546C67, 2, 28 + len(json) + len(places)))
        file.write(struct.pack("<II", len(json), 0x4E4F534A) + json)
        file.write(struct.pack("<II", len(places), 0x004E4942) + places)
    with open("model.obj", "w", encoding="ascii") as file:
        file.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")


write_models()
positions = numpy.array([[0, 0, 1], [1, 0, 1], [0, 1, 1]], "float32")
faces = numpy.array([[0, 1, 2]])
colors = numpy.eye(3, dtype="float32")

# fmt: off
import orvex
image = orvex.render("model.glb", size=(640, 480))                  # (480, 640, 4) uint8, straight alpha
views = orvex.render("model.glb", size=(640, 480), layers=("color", "depth", "normal", "id"),
                     camera=orvex.Camera.look_at(eye=(3, 2, 5), target=(0, 0, 0), fov=40))
with orvex.Engine() as engine, engine.view(640, 480) as view:        # many pictures, one context
    model = engine.load("model.obj")
    mesh = engine.mesh(positions, faces, colors=colors)               # arrays in, no copy kept
    for angle in range(0, 360, 10):
        view.draw([model, mesh], orvex.Camera.orbit(model, azimuth=angle))
        frame = view.color()
# fmt: on

assert image.shape == frame.shape == (480, 640, 4) and image.dtype == "uint8"
assert {name: (layer.shape[2:], str(layer.dtype)) for name, layer in views.items()} == {
    "color": ((4,), "uint8"), "depth": ((), "float32"), "normal": ((3,), "float32"),
    "id": ((), "int32")}
assert (views["id"] == 0).any() and len(numpy.unique(frame)) > 10
print(orvex.__version__, os.path.dirname(orvex.__file__))
