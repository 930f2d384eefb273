"""From Python: the programs of the guide's page. Wants a folder of models and one for pictures."""

import sys

models, pictures = sys.argv[1:]

import numpy
import orvex

image = orvex.render(models + "/lighthouse.obj", size=(320, 240))
print(image.shape, image.dtype)

views = orvex.render(models + "/lighthouse.obj", size=(320, 240), layers=("depth", "object"))
print(f"in the middle: {views['depth'][120, 160]:.1f} away")

with orvex.Engine() as engine, engine.view(320, 240) as view:
    model = engine.load(models + "/lighthouse.obj")
    for angle in range(0, 360, 120):
        view.draw(model, orvex.Camera.orbit(model, azimuth=angle, aim="turn"))
        view.text(f"{angle} degrees", 8, 8)
        view.save(f"{pictures}/{angle}.png")

    mesh = engine.mesh([[0, 0, 0], [4, 0, 0], [0, 4, 0]], [[0, 1, 2]], color="#cc3333")
    mesh.transform = [[1, 0, 0, 5], [0, 1, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]]
    camera = orvex.Camera.look_at(eye=(9, 7, 24), target=(3, 3, 0), fov=40)
    view.draw([model, mesh], camera)
    ids = view.object()
    print("pixels of the mesh:", (ids == len(model.meshes)).sum() > 1000)

    frame = numpy.empty((240, 320, 4), "uint8")
    view.color(out=frame)

    x, y, depth = camera.project((5, 4, 0), view.size)
    print(f"its corner: {x:.0f} {y:.0f}, {depth:.1f} away")
    print("there:", view.pick(x, y + 8).model is mesh)

try:
    orvex.render("none.obj")
except FileNotFoundError as error:
    print(error)
